#include "protocols/sensormatic.h"

#include <gtest/gtest.h>

#include <string>

#include "support/frame_rows.h"

using namespace vorna;
using vorna_test::ExpectFrames;

namespace {

// Answers every operation that Pan, Tilt, Move and MenuEnter may delegate to
// with a text naming the call, so the delegation shows.
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

TEST(Sensormatic, BuildsFramesWithZeroSumChecksum) {
    CSensormatic protocol;
    ExpectFrames(protocol, {
        {[](auto& p) { return p.Preset(1, 5, 1); }, "01 C7 02 04 32"},
        {[](auto& p) { return p.Pan(1, -0x20); }, "01 C0 81 20 9E"},
        {[](auto& p) { return p.Pan(1, 0); }, "01 83 7C"},
        {[](auto& p) { return p.AutoFocus(1, 1); }, "01 CC 08 2B"},
        {[](auto& p) { return p.RawCommand(1, 0); }, "01 00 FF"},
        {[](auto& p) { return p.Pan(7, 64); }, "07 C0 82 40 77"},
        {[](auto& p) { return p.Pan(1, 300); }, "01 C0 82 2C 91"},
        {[](auto& p) { return p.Pan(0x1FF, 0); }, "FF 83 7E"},
        {[](auto& p) { return p.Tilt(1, 5); }, "01 C0 84 05 B6"},
        {[](auto& p) { return p.Tilt(1, -5); }, "01 C0 85 05 B5"},
        {[](auto& p) { return p.Zoom(1, 2); }, "01 8A 75"},
        {[](auto& p) { return p.Zoom(1, -2); }, "01 8B 74"},
        {[](auto& p) { return p.Zoom(1, 0); }, "01 8C 73"},
        {[](auto& p) { return p.Move(1, -3, 2, 0); }, "01 C0 81 03 BB 01 C0 84 02 B9"},
        {[](auto& p) { return p.Move(1, 4, -1, -2); }, "01 C0 82 04 B9 01 C0 85 01 B9 01 8B 74"},
        {[](auto& p) { return p.Move(1, 0, 0, 0); }, ""},
        {[](auto& p) { return p.StopAxes(1, 3, -4, 2, 1, 1); }, "01 83 7C"},
        {[](auto& p) { return p.StopAxes(1, 0, -5, 2, 0, 0); }, "01 86 79"},
        {[](auto& p) { return p.StopAxes(1, 0, 0, -2, 0, 0); }, "01 8C 73"},
        {[](auto& p) { return p.StopAxes(1, 0, 0, 0, 5, 7); }, "01 92 6D"},
        {[](auto& p) { return p.StopAxes(1, 0, 0, 0, 0, -1); }, "01 89 76"},
        {[](auto& p) { return p.StopAxes(1, 0, 0, 0, 0, 0); }, ""},
        {[](auto& p) { return p.Iris(1, -1); }, "01 91 6E"},
        {[](auto& p) { return p.Iris(1, 0); }, "01 90 6F"},
        {[](auto& p) { return p.Focus(1, -1); }, "01 88 77"},
        {[](auto& p) { return p.Focus(1, 0); }, "01 87 78"},
        {[](auto& p) { return p.Preset(1, 5, 0); }, "01 C7 01 04 33"},
        {[](auto& p) { return p.Preset(1, 5, 2); }, "01 C7 01 04 33"},
        {[](auto& p) { return p.Preset(1, 0, 1); }, "01 C7 02 FF 37"},
        {[](auto& p) { return p.AutoIris(1, -1); }, "01 CC 08 2B"},
        {[](auto& p) { return p.AutoIris(1, 0) + p.AutoFocus(1, 0); }, ""},
        {[](auto& p) { return p.Menu(1, 1); }, "01 CC 01 32"},
        {[](auto& p) { return p.Menu(1, 5); }, "01 CC 01 32"},
        {[](auto& p) { return p.Menu(1, 0); }, "01 CC 02 31"},
        {[](auto& p) { return p.Menu(1, -1); }, "01 CC 02 31"},
        {[](auto& p) { return p.Flip(1, 0); }, "01 CC 00 33"},
        {[](auto& p) { return p.ApplePeel(1, 0); }, "01 C6 39"},
        {[](auto& p) { return p.Pattern(1, 1, 0); }, "01 A0 5F"},
        {[](auto& p) { return p.Pattern(1, 2, 1); }, "01 B8 47"},
        {[](auto& p) { return p.Pattern(1, 2, 2); }, "01 A3 5C"},
        {[](auto& p) { return p.Pattern(1, 1, 3); }, "01 B0 4F"},
        {[](auto& p) { return p.Pattern(1, 2, 4); }, "01 00 FF"},
        {[](auto& p) { return p.RawCommand(1, 0xCC123456); }, "01 CC 12 21"},
        {[](auto& p) { return p.RawCommand(1, 0x8A00FFFF); }, "01 8A 75"},
    });
}

// Stops, combined moves and the menu select are built through the object's
// own operations, so a class that refines one of them changes them all.
TEST(Sensormatic, DelegatesThroughItsOwnOperations) {
    NamingSensormatic protocol;
    ExpectFrames<NamingSensormatic>(protocol, {
        {[](auto& p) { return p.CSensormatic::Pan(4, 0); }, "StopAxes(4,1,0,0,0,0)"},
        {[](auto& p) { return p.CSensormatic::Tilt(4, 0); }, "StopAxes(4,0,1,0,0,0)"},
        {[](auto& p) { return p.Move(4, -3, 2, 5); }, "Pan(4,-3)Tilt(4,2)Zoom(4,5)"},
        {[](auto& p) { return p.Move(4, 0, -2, 0); }, "Tilt(4,-2)"},
        {[](auto& p) { return p.MenuEnter(4, 9); }, "Focus(4,-1)"},
    }, vorna_test::Notation::kText);
}
