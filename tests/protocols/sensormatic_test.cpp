#include "protocols/sensormatic.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <string>
#include <vector>

#include "protocols/protocol_table.h"
#include "support/protocol_capabilities.h"
#include "support/recording_host.h"

using namespace vorna;
using vorna_test::Hex;

namespace {

using Build = std::function<Bytes(CSensormatic&)>;

struct Case {
    Build build;
    const char* hex;
};

// Answers every operation that Pan, Tilt, Move and MenuEnter may delegate to
// with a text naming the call, so the delegation shows.
class NamingSensormatic : public CSensormatic {
public:
    Bytes StopAxes(uint32_t a, int p, int t, int z, int i, int f) override {
        return "StopAxes(" + Args({int(a), p, t, z, i, f}) + ")";
    }
    Bytes Pan(uint32_t a, int s) override { return "Pan(" + Args({int(a), s}) + ")"; }
    Bytes Tilt(uint32_t a, int s) override { return "Tilt(" + Args({int(a), s}) + ")"; }
    Bytes Zoom(uint32_t a, int s) override { return "Zoom(" + Args({int(a), s}) + ")"; }
    Bytes Focus(uint32_t a, int d) override { return "Focus(" + Args({int(a), d}) + ")"; }

private:
    static std::string Args(std::initializer_list<int> values) {
        std::string text;
        for (int value : values) text += (text.empty() ? "" : ",") + std::to_string(value);
        return text;
    }
};

}  // namespace

TEST(Sensormatic, BuildsFramesWithZeroSumChecksum) {
    const std::vector<Case> cases = {
        {[](CSensormatic& p) { return p.Preset(1, 5, 1); }, "01 C7 02 04 32"},
        {[](CSensormatic& p) { return p.Pan(1, -0x20); }, "01 C0 81 20 9E"},
        {[](CSensormatic& p) { return p.Pan(1, 0); }, "01 83 7C"},
        {[](CSensormatic& p) { return p.AutoFocus(1, 1); }, "01 CC 08 2B"},
        {[](CSensormatic& p) { return p.RawCommand(1, 0); }, "01 00 FF"},
        {[](CSensormatic& p) { return p.Pan(7, 64); }, "07 C0 82 40 77"},
        {[](CSensormatic& p) { return p.Pan(1, 300); }, "01 C0 82 2C 91"},
        {[](CSensormatic& p) { return p.Pan(1, INT_MIN); }, "01 C0 81 00 BE"},
        {[](CSensormatic& p) { return p.Pan(0x1FF, 0); }, "FF 83 7E"},
        {[](CSensormatic& p) { return p.Tilt(1, 5); }, "01 C0 84 05 B6"},
        {[](CSensormatic& p) { return p.Tilt(1, -5); }, "01 C0 85 05 B5"},
        {[](CSensormatic& p) { return p.Tilt(1, 0); }, "01 86 79"},
        {[](CSensormatic& p) { return p.Zoom(1, 2); }, "01 8A 75"},
        {[](CSensormatic& p) { return p.Zoom(1, -2); }, "01 8B 74"},
        {[](CSensormatic& p) { return p.Zoom(1, 0); }, "01 8C 73"},
        {[](CSensormatic& p) { return p.Move(1, -3, 2, 0); }, "01 C0 81 03 BB 01 C0 84 02 B9"},
        {[](CSensormatic& p) { return p.Move(1, 4, -1, -2); }, "01 C0 82 04 B9 01 C0 85 01 B9 01 8B 74"},
        {[](CSensormatic& p) { return p.Move(1, 0, 0, 2); }, "01 8A 75"},
        {[](CSensormatic& p) { return p.Move(1, 0, 0, 0); }, ""},
        {[](CSensormatic& p) { return p.StopAxes(1, 3, -4, 2, 1, 1); }, "01 83 7C"},
        {[](CSensormatic& p) { return p.StopAxes(1, 0, -5, 2, 0, 0); }, "01 86 79"},
        {[](CSensormatic& p) { return p.StopAxes(1, 0, 0, -2, 0, 0); }, "01 8C 73"},
        {[](CSensormatic& p) { return p.StopAxes(1, 0, 0, 0, 5, 7); }, "01 92 6D"},
        {[](CSensormatic& p) { return p.StopAxes(1, 0, 0, 0, 0, -1); }, "01 89 76"},
        {[](CSensormatic& p) { return p.StopAxes(1, 0, 0, 0, 0, 0); }, ""},
        {[](CSensormatic& p) { return p.Iris(1, 1); }, "01 90 6F"},
        {[](CSensormatic& p) { return p.Iris(1, -1); }, "01 91 6E"},
        {[](CSensormatic& p) { return p.Iris(1, 0); }, "01 90 6F"},
        {[](CSensormatic& p) { return p.Focus(1, 1); }, "01 87 78"},
        {[](CSensormatic& p) { return p.Focus(1, -1); }, "01 88 77"},
        {[](CSensormatic& p) { return p.Focus(1, 0); }, "01 87 78"},
        {[](CSensormatic& p) { return p.Preset(1, 5, 0); }, "01 C7 01 04 33"},
        {[](CSensormatic& p) { return p.Preset(1, 5, 2); }, "01 C7 01 04 33"},
        {[](CSensormatic& p) { return p.Preset(1, 0, 1); }, "01 C7 02 FF 37"},
        {[](CSensormatic& p) { return p.Preset(99, 96, 1); }, "63 C7 02 5F 75"},
        {[](CSensormatic& p) { return p.AutoIris(1, 1); }, "01 CC 08 2B"},
        {[](CSensormatic& p) { return p.AutoIris(1, -1); }, "01 CC 08 2B"},
        {[](CSensormatic& p) { return p.AutoIris(1, 0); }, ""},
        {[](CSensormatic& p) { return p.AutoFocus(1, 0); }, ""},
        {[](CSensormatic& p) { return p.Menu(1, 1); }, "01 CC 01 32"},
        {[](CSensormatic& p) { return p.Menu(1, 5); }, "01 CC 01 32"},
        {[](CSensormatic& p) { return p.Menu(1, 0); }, "01 CC 02 31"},
        {[](CSensormatic& p) { return p.Menu(1, -1); }, "01 CC 02 31"},
        {[](CSensormatic& p) { return p.MenuEnter(1, 7); }, "01 88 77"},
        {[](CSensormatic& p) { return p.Flip(1, 0); }, "01 CC 00 33"},
        {[](CSensormatic& p) { return p.ApplePeel(1, 0); }, "01 C6 39"},
        {[](CSensormatic& p) { return p.Pattern(1, 1, 0); }, "01 A0 5F"},
        {[](CSensormatic& p) { return p.Pattern(1, 0x62, 0); }, "01 01 FE"},
        {[](CSensormatic& p) { return p.Pattern(1, 2, 1); }, "01 B8 47"},
        {[](CSensormatic& p) { return p.Pattern(1, 2, 2); }, "01 A3 5C"},
        {[](CSensormatic& p) { return p.Pattern(1, 1, 3); }, "01 B0 4F"},
        {[](CSensormatic& p) { return p.Pattern(1, 2, 4); }, "01 00 FF"},
        {[](CSensormatic& p) { return p.Pattern(1, 2, -1); }, "01 00 FF"},
        {[](CSensormatic& p) { return p.RawCommand(1, 0xCC123456); }, "01 CC 12 21"},
        {[](CSensormatic& p) { return p.RawCommand(1, 0x8A00FFFF); }, "01 8A 75"},
        {[](CSensormatic& p) { return p.RawCommand(1, 1); }, "01 00 FF"},
        {[](CSensormatic& p) { return p.SetZoomSpeed(1, 3); }, ""},
        {[](CSensormatic& p) { return p.MenuNavigate(1, 1, 0, 0); }, ""},
        {[](CSensormatic& p) { return p.PassThrough(1, vorna_test::FromHex("01 00 FF")); }, "01 00 FF"},
    };
    for (size_t row = 0; row < cases.size(); ++row) {
        SCOPED_TRACE("row " + std::to_string(row) + ": " + cases[row].hex);
        CSensormatic protocol;
        EXPECT_EQ(Hex(cases[row].build(protocol)), cases[row].hex);
    }
}

// Stops, combined moves and the menu select are built through the object's
// own operations, so a class that refines one of them changes them all.
TEST(Sensormatic, DelegatesThroughItsOwnOperations) {
    const std::vector<std::pair<std::function<Bytes(NamingSensormatic&)>, const char*>> cases = {
        {[](NamingSensormatic& p) { return p.CSensormatic::Pan(4, 0); }, "StopAxes(4,1,0,0,0,0)"},
        {[](NamingSensormatic& p) { return p.CSensormatic::Tilt(4, 0); }, "StopAxes(4,0,1,0,0,0)"},
        {[](NamingSensormatic& p) { return p.Move(4, -3, 2, 5); }, "Pan(4,-3)Tilt(4,2)Zoom(4,5)"},
        {[](NamingSensormatic& p) { return p.Move(4, 0, -2, 0); }, "Tilt(4,-2)"},
        {[](NamingSensormatic& p) { return p.MenuEnter(4, 9); }, "Focus(4,-1)"},
    };
    for (const auto& [build, text] : cases) {
        SCOPED_TRACE(text);
        NamingSensormatic protocol;
        EXPECT_EQ(build(protocol), text);
    }
}

TEST(Sensormatic, SendsOnlyQueuedGoToPresetInBurstsOfThree) {
    CSensormatic protocol;
    for (int opcode = -1; opcode <= 73; ++opcode) {
        EXPECT_EQ(protocol.GetRepeatCount(opcode), opcode == 60 ? 3 : 0) << "opcode " << opcode;
    }
}

TEST(Sensormatic, RegisteredAsAdRs422WithItsCapabilities) {
    ProtocolTable table;
    FillProtocolTable(table);
    auto* protocol = dynamic_cast<CSensormatic*>(FindProtocol(table, "AD-RS422"));
    ASSERT_NE(protocol, nullptr);
    const vorna_test::Capabilities expected{96, 1, 99, false, 3, 3, false, 0, 0x80003, 250, true, true, true, true, true};
    EXPECT_EQ(vorna_test::CapabilitiesOf(*protocol), expected);
}
