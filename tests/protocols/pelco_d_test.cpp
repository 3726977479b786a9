#include "protocols/pelco_d.h"

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

using Build = std::function<Bytes(CPelcoD&)>;

struct Case {
    const char* what;
    Build build;
    const char* hex;  // "" = unsupported
};

void ExpectFrames(CPelcoD& protocol, const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(Hex(c.build(protocol)), c.hex);
    }
}

// Builders that both classes answer alike.
const std::vector<Case> kSharedFrames = {
    {"pan left at 0x20", [](CPelcoD& p) { return p.Move(1, -0x20, 0, 0); }, "FF 01 00 04 1F 00 24"},
    {"stop all", [](CPelcoD& p) { return p.Move(1, 0, 0, 0); }, "FF 01 00 00 00 00 01"},
    {"pan right slowest", [](CPelcoD& p) { return p.Move(1, 1, 0, 0); }, "FF 01 00 02 00 00 03"},
    {"tilt up, pan left", [](CPelcoD& p) { return p.Move(7, -3, 5, 0); }, "FF 07 00 0C 02 04 19"},
    {"tilt down", [](CPelcoD& p) { return p.Move(1, 0, -64, 0); }, "FF 01 00 10 00 3F 50"},
    {"zoom in has no speed", [](CPelcoD& p) { return p.Move(1, 0, 0, 5); }, "FF 01 00 20 00 00 21"},
    {"zoom out", [](CPelcoD& p) { return p.Move(1, 0, 0, -1); }, "FF 01 00 40 00 00 41"},
    {"speed 65 not clamped", [](CPelcoD& p) { return p.Move(1, 65, 0, 0); }, "FF 01 00 02 40 00 43"},
    {"speed 257 wraps", [](CPelcoD& p) { return p.Move(1, -257, 0, 0); }, "FF 01 00 04 00 00 05"},
    {"INT_MIN speed", [](CPelcoD& p) { return p.Move(1, INT_MIN, 0, 0); }, "FF 01 00 04 FF 00 04"},
    {"address 0x1FF", [](CPelcoD& p) { return p.Move(0x1FF, 0, 0, 0); }, "FF FF 00 00 00 00 FF"},
    {"checksum wraps", [](CPelcoD& p) { return p.Move(0xFF, 0x40, 0x40, 0); }, "FF FF 00 0A 3F 3F 87"},
    {"set preset", [](CPelcoD& p) { return p.Preset(2, 5, 0); }, "FF 02 00 03 00 05 0A"},
    {"go to preset", [](CPelcoD& p) { return p.Preset(2, 5, 1); }, "FF 02 00 07 00 05 0E"},
    {"clear preset", [](CPelcoD& p) { return p.Preset(2, 5, 2); }, "FF 02 00 05 00 05 0C"},
    {"unknown preset action", [](CPelcoD& p) { return p.Preset(2, 5, 9); }, "FF 02 00 00 00 05 07"},
    {"preset 300", [](CPelcoD& p) { return p.Preset(1, 300, 1); }, "FF 01 00 07 00 2C 34"},
    {"zoom speed", [](CPelcoD& p) { return p.SetZoomSpeed(1, 2); }, "FF 01 00 25 00 02 28"},
    {"iris open", [](CPelcoD& p) { return p.Iris(1, 1); }, "FF 01 02 00 00 00 03"},
    {"iris close", [](CPelcoD& p) { return p.Iris(1, -1); }, "FF 01 04 00 00 00 05"},
    {"iris stop", [](CPelcoD& p) { return p.Iris(1, 0); }, "FF 01 00 00 00 00 01"},
    {"focus near", [](CPelcoD& p) { return p.Focus(1, 1); }, "FF 01 01 00 00 00 02"},
    {"focus far", [](CPelcoD& p) { return p.Focus(1, -1); }, "FF 01 00 80 00 00 81"},
    {"focus stop", [](CPelcoD& p) { return p.Focus(1, 0); }, "FF 01 00 00 00 00 01"},
    {"auto iris off", [](CPelcoD& p) { return p.AutoIris(1, 0); }, "FF 01 00 2D 00 02 30"},
    {"auto iris on", [](CPelcoD& p) { return p.AutoIris(1, 1); },
     "FF 01 00 2D 00 00 2E FF 01 00 41 00 80 C2"},
    {"auto focus on", [](CPelcoD& p) { return p.AutoFocus(1, 1); }, "FF 01 00 2B 00 00 2C"},
    {"auto focus off", [](CPelcoD& p) { return p.AutoFocus(1, 0); }, "FF 01 00 2B 00 02 2E"},
    {"raw", [](CPelcoD& p) { return p.RawCommand(3, 0x00090000); }, "FF 03 00 09 00 00 0C"},
    {"raw all bytes", [](CPelcoD& p) { return p.RawCommand(1, 0x12345678); }, "FF 01 12 34 56 78 15"},
    {"menu enter ignores value", [](CPelcoD& p) { return p.MenuEnter(1, 42); }, "FF 01 02 00 00 00 03"},
    {"flip", [](CPelcoD& p) { return p.Flip(1, 0); }, "FF 01 00 07 00 21 29"},
    {"stop axes", [](CPelcoD& p) { return p.StopAxes(1, 5, 0, 0, 0, 0); }, ""},
    {"pan", [](CPelcoD& p) { return p.Pan(1, 5); }, ""},
    {"tilt", [](CPelcoD& p) { return p.Tilt(1, 5); }, ""},
    {"zoom", [](CPelcoD& p) { return p.Zoom(1, 5); }, ""},
    {"menu navigate", [](CPelcoD& p) { return p.MenuNavigate(1, 1, 0, 0); }, ""},
    {"apple peel", [](CPelcoD& p) { return p.ApplePeel(1, 0); }, ""},
    {"pass through", [](CPelcoD& p) { return p.PassThrough(1, vorna_test::FromHex("FF 00 01")); }, "FF 00 01"},
};

// A subclass whose menu must follow its own preset and iris commands.
class CRenumberedPelcoD : public CPelcoD {
public:
    Bytes Preset(uint32_t address, int number, int action) override {
        return CPelcoD::Preset(address, number + 1, action);
    }
    Bytes Iris(uint32_t address, int direction) override { return CPelcoD::Iris(address, -direction); }
};

}  // namespace

TEST(PelcoD, Frames) {
    CPelcoD protocol;
    ExpectFrames(protocol, kSharedFrames);
    ExpectFrames(protocol, {
        {"menu on", [](CPelcoD& p) { return p.Menu(1, 1); }, "FF 01 00 03 00 5F 63"},
        {"menu on, any positive", [](CPelcoD& p) { return p.Menu(1, 7); }, "FF 01 00 03 00 5F 63"},
        {"menu off", [](CPelcoD& p) { return p.Menu(1, 0); }, ""},
        {"menu negative", [](CPelcoD& p) { return p.Menu(1, -1); }, ""},
        {"record pattern", [](CPelcoD& p) { return p.Pattern(1, 2, 0); }, "FF 01 00 1F 00 02 22"},
        {"stop recording", [](CPelcoD& p) { return p.Pattern(1, 2, 1); }, "FF 01 00 21 00 00 22"},
        {"pattern action 2", [](CPelcoD& p) { return p.Pattern(1, 2, 2); }, ""},
        {"run pattern", [](CPelcoD& p) { return p.Pattern(1, 2, 3); }, "FF 01 00 23 00 02 26"},
        {"unknown pattern action", [](CPelcoD& p) { return p.Pattern(1, 2, 4); }, ""},
    });
}

TEST(PelcoD, HsdInheritsEverythingButMenuAndPattern) {
    CHSDPelcoD protocol;
    ExpectFrames(protocol, kSharedFrames);
    ExpectFrames(protocol, {
        {"menu on goes to preset 90", [](CPelcoD& p) { return p.Menu(1, 1); }, "FF 01 00 07 00 5A 62"},
        {"menu off", [](CPelcoD& p) { return p.Menu(1, 0); }, "FF 01 04 00 00 00 05 FF 01 00 00 00 00 01"},
        {"run pattern 0", [](CPelcoD& p) { return p.Pattern(4, 0, 3); },
         "FF 04 00 02 00 00 06 FF 04 00 07 00 4F 5A"},
        {"run pattern 1", [](CPelcoD& p) { return p.Pattern(4, 1, 3); },
         "FF 04 00 02 00 00 06 FF 04 00 07 00 50 5B"},
        {"run pattern 2", [](CPelcoD& p) { return p.Pattern(4, 2, 3); },
         "FF 04 00 02 00 00 06 FF 04 00 07 00 51 5C"},
        {"run pattern 3", [](CPelcoD& p) { return p.Pattern(4, 3, 3); }, ""},
        {"run pattern -1", [](CPelcoD& p) { return p.Pattern(4, -1, 3); }, ""},
        {"record pattern", [](CPelcoD& p) { return p.Pattern(4, 0, 0); }, ""},
        {"stop recording", [](CPelcoD& p) { return p.Pattern(4, 0, 1); }, ""},
        {"pattern action 2", [](CPelcoD& p) { return p.Pattern(4, 0, 2); }, ""},
    });
}

TEST(PelcoD, MenuIsBuiltThroughTheObjectsOwnPresetAndIris) {
    CRenumberedPelcoD protocol;
    EXPECT_EQ(Hex(protocol.Menu(1, 1)), "FF 01 00 03 00 60 64");
    EXPECT_EQ(Hex(protocol.MenuEnter(1, 0)), "FF 01 04 00 00 00 05");
}

TEST(PelcoD, CapabilitiesOfTheRegisteredNames) {
    struct Case {
        const char* name;
        bool hsd;
        vorna_test::Capabilities expected;
    };
    const std::vector<Case> cases = {
        {"Pelco-D", false, {32, 0, 255, false, 0, 1, false, 0, 1, 250, true, true, true, false, true}},
        {"HSD-Pelco-D", true, {32, 0, 255, false, 0, 3, false, 0, 3, 250, true, true, true, false, true}},
    };
    ProtocolTable table;
    FillProtocolTable(table);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        auto* protocol = dynamic_cast<CPelcoD*>(FindProtocol(table, c.name));
        ASSERT_NE(protocol, nullptr);
        EXPECT_EQ(dynamic_cast<CHSDPelcoD*>(protocol) != nullptr, c.hsd);
        EXPECT_EQ(vorna_test::CapabilitiesOf(*protocol), c.expected);
    }
}
