#include "protocols/ge_impac.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "protocols/protocol_table.h"
#include "support/protocol_capabilities.h"
#include "support/recording_host.h"

using namespace vorna;
using vorna_test::Hex;

namespace {

using Build = std::function<Bytes(CGEImpac&)>;

struct Case {
    Build build;
    const char* hex;
};

}  // namespace

TEST(GeImpac, BuildsCountedFramesWithTwosComplementChecksum) {
    const std::vector<Case> cases = {
        {[](CGEImpac& p) { return p.Iris(5, 1); }, "FF 07 20 50 80 00 05 00 04"},
        {[](CGEImpac& p) { return p.Iris(5, -1); }, "FF 07 20 43 80 00 05 00 11"},
        {[](CGEImpac& p) { return p.Iris(5, 0); }, ""},
        {[](CGEImpac& p) { return p.Iris(253, 1); }, "FF 07 20 50 80 00 FD 00 0C"},
        {[](CGEImpac& p) { return p.Focus(5, 1); }, "FF 07 20 4E 80 00 05 00 06"},
        {[](CGEImpac& p) { return p.Focus(5, -1); }, "FF 07 20 46 80 00 05 00 0E"},
        {[](CGEImpac& p) { return p.Focus(5, 0); }, ""},
        {[](CGEImpac& p) { return p.Move(5, 20, -2, 2); }, "FF 09 09 14 00 00 05 8A 01 90 BA"},
        {[](CGEImpac& p) { return p.Move(5, 0, 0, 0); }, "FF 09 09 14 00 00 05 00 00 00 D5"},
        {[](CGEImpac& p) { return p.Move(5, 1, -1, 0); }, "FF 09 09 14 00 00 05 81 01 00 53"},
        {[](CGEImpac& p) { return p.Move(5, -3, 0, 0); }, "FF 09 09 14 00 00 05 01 00 00 D4"},
        {[](CGEImpac& p) { return p.Move(5, -4, -5, 0); }, "FF 09 09 14 00 00 05 02 02 00 D1"},
        {[](CGEImpac& p) { return p.Move(5, 64, -64, 0); }, "FF 09 09 14 00 00 05 A0 20 00 15"},
        {[](CGEImpac& p) { return p.Move(5, 300, 0, 0); }, "FF 09 09 14 00 00 05 16 00 00 BF"},
        {[](CGEImpac& p) { return p.Move(5, 0, 0, -2); }, "FF 09 09 14 00 00 05 00 00 10 C5"},
        {[](CGEImpac& p) { return p.Move(5, 0, 0, 15); }, "FF 09 09 14 00 00 05 00 00 F8 DD"},
        {[](CGEImpac& p) { return p.Move(5, 0, 0, 16); }, "FF 09 09 14 00 00 05 00 00 00 D5"},
        {[](CGEImpac& p) { return p.Move(5, 0, 0, -16); }, "FF 09 09 14 00 00 05 00 00 80 55"},
        {[](CGEImpac& p) { return p.Move(0x1FF, 0, 0, 0); }, "FF 09 09 14 00 00 FF 00 00 00 DB"},
        {[](CGEImpac& p) { return p.Preset(5, 3, 1); }, "FF 07 09 0B 00 00 05 02 DE"},
        {[](CGEImpac& p) { return p.Preset(5, 3, 0); }, "FF 07 09 0A 00 00 05 02 DF"},
        {[](CGEImpac& p) { return p.Preset(5, 0, 1); }, "FF 07 09 0B 00 00 05 FF E1"},
        {[](CGEImpac& p) { return p.Preset(5, 3, 2); }, ""},
        {[](CGEImpac& p) { return p.StopAxes(5, 3, 0, 0, 0, 0); }, ""},
        {[](CGEImpac& p) { return p.StopAxes(5, 0, -2, 2, 0, 0); }, ""},
        {[](CGEImpac& p) { return p.StopAxes(5, 0, 0, 0, -1, 0); }, "FF 07 20 63 80 00 05 00 F1"},
        {[](CGEImpac& p) { return p.StopAxes(5, 0, 0, 0, 0, -1); }, "FF 07 20 66 80 00 05 00 EE"},
        {[](CGEImpac& p) { return p.StopAxes(5, 9, 9, 9, 1, 0); }, "FF 07 20 70 80 00 05 00 E4"},
        {[](CGEImpac& p) { return p.StopAxes(5, 0, 0, 0, 1, 1); },
         "FF 07 20 70 80 00 05 00 E4 FF 07 20 6E 80 00 05 00 E6"},
        {[](CGEImpac& p) { return p.Pan(5, 32); }, ""},
        {[](CGEImpac& p) { return p.Tilt(5, 32); }, ""},
        {[](CGEImpac& p) { return p.Zoom(5, 2); }, ""},
        {[](CGEImpac& p) { return p.SetZoomSpeed(5, 2); }, ""},
        {[](CGEImpac& p) { return p.AutoIris(5, 1); }, ""},
        {[](CGEImpac& p) { return p.AutoFocus(5, 1); }, ""},
        {[](CGEImpac& p) { return p.RawCommand(5, 1); }, ""},
        {[](CGEImpac& p) { return p.Menu(5, 1); }, ""},
        {[](CGEImpac& p) { return p.MenuEnter(5, 1); }, ""},
        {[](CGEImpac& p) { return p.MenuNavigate(5, 0, 0, 1); }, ""},
        {[](CGEImpac& p) { return p.Flip(5, 0); }, ""},
        {[](CGEImpac& p) { return p.ApplePeel(5, 0); }, ""},
        {[](CGEImpac& p) { return p.Pattern(5, 1, 3); }, ""},
        {[](CGEImpac& p) { return p.PassThrough(5, vorna_test::FromHex("FF 00 01")); }, "FF 00 01"},
    };
    for (size_t row = 0; row < cases.size(); ++row) {
        SCOPED_TRACE("row " + std::to_string(row) + ": " + cases[row].hex);
        CGEImpac protocol;
        EXPECT_EQ(Hex(cases[row].build(protocol)), cases[row].hex);
    }
}

TEST(GeImpac, RegisteredWithItsCapabilities) {
    ProtocolTable table;
    FillProtocolTable(table);
    auto* protocol = dynamic_cast<CGEImpac*>(FindProtocol(table, "GE-Impac"));
    ASSERT_NE(protocol, nullptr);
    const vorna_test::Capabilities expected{32, 0, 253, false, 0, 0, false, 0, 0, 250, false, false, false, false, false};
    EXPECT_EQ(vorna_test::CapabilitiesOf(*protocol), expected);
}
