// Builders that are made of the object's own operations: a class that
// refines one of them changes every command built from it.
#include <gtest/gtest.h>

#include <string>

#include "protocols/pelco_d.h"
#include "protocols/pelco_p.h"
#include "protocols/sensormatic.h"
#include "support/recording_host.h"

using namespace vorna;
using vorna_test::Hex;

namespace {

class CRenumberedPelcoD : public CPelcoD {
public:
    Bytes Preset(uint32_t address, int number, int action) override {
        return CPelcoD::Preset(address, number + 1, action);
    }
    Bytes Iris(uint32_t address, int direction) override { return CPelcoD::Iris(address, -direction); }
};

class CRenumberedPelcoP : public CPelcoP {
public:
    Bytes Preset(uint32_t address, int number, int action) override {
        return CPelcoP::Preset(address, number + 1, action);
    }
};

// Answers every operation that Pan, Tilt, Move and MenuEnter may delegate to
// with a text naming the call.
class NamingSensormatic : public CSensormatic {
public:
    Bytes StopAxes(uint32_t a, int p, int t, int z, int i, int f) override {
        return Call("StopAxes", a, p, t, z, i, f);
    }
    Bytes Pan(uint32_t a, int s) override { return Call("Pan", a, s); }
    Bytes Tilt(uint32_t a, int s) override { return Call("Tilt", a, s); }
    Bytes Zoom(uint32_t a, int s) override { return Call("Zoom", a, s); }
    Bytes Focus(uint32_t a, int d) override { return Call("Focus", a, d); }

private:
    template <typename... Values>
    static std::string Call(const char* name, Values... values) {
        std::string args;
        for (int value : {int(values)...}) args += (args.empty() ? "" : ",") + std::to_string(value);
        return name + ("(" + args + ")");
    }
};

}  // namespace

TEST(Delegation, PelcoMenusFollowTheObjectsOwnPresetAndIris) {
    CRenumberedPelcoD pelcoD;
    EXPECT_EQ(Hex(pelcoD.Menu(1, 1)), "FF 01 00 03 00 60 64");
    EXPECT_EQ(Hex(pelcoD.MenuEnter(1, 0)), "FF 01 04 00 00 00 05");
    CRenumberedPelcoP pelcoP;
    EXPECT_EQ(Hex(pelcoP.Menu(1, 1)), "A0 00 00 03 00 60 AF 6C");
}

TEST(Delegation, SensormaticStopsMovesAndMenuSelectUseItsOwnOperations) {
    NamingSensormatic p;
    EXPECT_EQ(p.CSensormatic::Pan(4, 0), "StopAxes(4,1,0,0,0,0)");
    EXPECT_EQ(p.CSensormatic::Tilt(4, 0), "StopAxes(4,0,1,0,0,0)");
    EXPECT_EQ(p.Move(4, -3, 2, 5), "Pan(4,-3)Tilt(4,2)Zoom(4,5)");
    EXPECT_EQ(p.Move(4, 0, -2, 0), "Tilt(4,-2)");
    EXPECT_EQ(p.MenuEnter(4, 9), "Focus(4,-1)");
}
