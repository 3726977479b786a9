#include "protocols/pelco_p.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "protocols/protocol_table.h"
#include "support/protocol_capabilities.h"
#include "support/recording_host.h"

using namespace vorna;
using vorna_test::Hex;

namespace {

// A subclass whose menu must follow its own preset command.
class CRenumberedPelcoP : public CPelcoP {
public:
    Bytes Preset(uint32_t address, int number, int action) override {
        return CPelcoP::Preset(address, number + 1, action);
    }
};

}  // namespace

TEST(PelcoP, Frames) {
    struct Case {
        const char* what;
        std::function<Bytes(CPelcoP&)> build;
        const char* hex;  // "" = unsupported
    };
    const std::vector<Case> cases = {
        {"go to preset 5", [](CPelcoP& p) { return p.Preset(1, 5, 1); }, "A0 00 00 07 00 05 AF 0D"},
        {"set preset", [](CPelcoP& p) { return p.Preset(1, 5, 0); }, "A0 00 00 03 00 05 AF 09"},
        {"clear preset", [](CPelcoP& p) { return p.Preset(1, 5, 2); }, "A0 00 00 05 00 05 AF 0F"},
        {"unknown preset action", [](CPelcoP& p) { return p.Preset(1, 5, 7); }, "A0 00 00 00 00 05 AF 0A"},
        {"preset 300", [](CPelcoP& p) { return p.Preset(1, 300, 1); }, "A0 00 00 07 00 2C AF 24"},
        {"pan left at 0x20", [](CPelcoP& p) { return p.Move(2, -0x20, 0, 0); }, "A0 01 00 04 1F 00 AF 15"},
        {"stop", [](CPelcoP& p) { return p.Move(1, 0, 0, 0); }, "A0 00 00 00 00 00 AF 0F"},
        {"address 0 wraps", [](CPelcoP& p) { return p.Move(0, 0, 0, 0); }, "A0 FF 00 00 00 00 AF F0"},
        {"address 32", [](CPelcoP& p) { return p.Move(32, 0, 0, 0); }, "A0 1F 00 00 00 00 AF 10"},
        {"right, down, zoom out", [](CPelcoP& p) { return p.Move(1, 3, -2, -1); }, "A0 00 00 52 02 01 AF 5E"},
        {"zoom in has no speed", [](CPelcoP& p) { return p.Move(1, 0, 0, 7); }, "A0 00 00 20 00 00 AF 2F"},
        {"tilt up, speed 65", [](CPelcoP& p) { return p.Move(1, 0, 65, 0); }, "A0 00 00 08 00 40 AF 47"},
        {"zoom speed", [](CPelcoP& p) { return p.SetZoomSpeed(1, 3); }, "A0 00 00 25 00 03 AF 29"},
        {"iris open", [](CPelcoP& p) { return p.Iris(1, 1); }, "A0 00 04 00 00 00 AF 0B"},
        {"iris close", [](CPelcoP& p) { return p.Iris(1, -1); }, "A0 00 08 00 00 00 AF 07"},
        {"iris stop", [](CPelcoP& p) { return p.Iris(1, 0); }, "A0 00 00 00 00 00 AF 0F"},
        {"focus near", [](CPelcoP& p) { return p.Focus(1, 1); }, "A0 00 02 00 00 00 AF 0D"},
        {"focus far", [](CPelcoP& p) { return p.Focus(1, -1); }, "A0 00 01 00 00 00 AF 0E"},
        {"focus stop", [](CPelcoP& p) { return p.Focus(1, 0); }, "A0 00 00 00 00 00 AF 0F"},
        {"raw", [](CPelcoP& p) { return p.RawCommand(1, 0x12345678); }, "A0 00 12 34 56 78 AF 07"},
        {"menu on", [](CPelcoP& p) { return p.Menu(3, 1); }, "A0 02 00 03 00 5F AF 51"},
        {"menu off", [](CPelcoP& p) { return p.Menu(3, 0); }, ""},
        {"stop axes", [](CPelcoP& p) { return p.StopAxes(1, 5, 0, 0, 0, 0); }, ""},
        {"pan", [](CPelcoP& p) { return p.Pan(1, 5); }, ""},
        {"tilt", [](CPelcoP& p) { return p.Tilt(1, 5); }, ""},
        {"zoom", [](CPelcoP& p) { return p.Zoom(1, 5); }, ""},
        {"auto iris", [](CPelcoP& p) { return p.AutoIris(1, 1); }, ""},
        {"auto focus", [](CPelcoP& p) { return p.AutoFocus(1, 1); }, ""},
        {"menu enter", [](CPelcoP& p) { return p.MenuEnter(1, 1); }, ""},
        {"menu navigate", [](CPelcoP& p) { return p.MenuNavigate(1, 1, 0, 0); }, ""},
        {"flip", [](CPelcoP& p) { return p.Flip(1, 0); }, ""},
        {"apple peel", [](CPelcoP& p) { return p.ApplePeel(1, 0); }, ""},
        {"pattern", [](CPelcoP& p) { return p.Pattern(1, 0, 3); }, ""},
        {"pass through", [](CPelcoP& p) { return p.PassThrough(1, vorna_test::FromHex("A0 00")); }, "A0 00"},
    };
    CPelcoP protocol;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(Hex(c.build(protocol)), c.hex);
    }
}

TEST(PelcoP, MenuIsBuiltThroughTheObjectsOwnPreset) {
    CRenumberedPelcoP protocol;
    EXPECT_EQ(Hex(protocol.Menu(1, 1)), "A0 00 00 03 00 60 AF 6C");
}

TEST(PelcoP, CapabilitiesOfTheRegisteredName) {
    ProtocolTable table;
    FillProtocolTable(table);
    auto* protocol = dynamic_cast<CPelcoP*>(FindProtocol(table, "Pelco-P"));
    ASSERT_NE(protocol, nullptr);
    const vorna_test::Capabilities expected{32, 1, 31, false, 0, 1, false, 0, 0, 250, false, false, false, false, true};
    EXPECT_EQ(vorna_test::CapabilitiesOf(*protocol), expected);
}
