#include "protocols/bosch.h"

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

using Build = std::function<Bytes(CBosch&)>;

struct Case {
    Build build;
    const char* hex;
};

}  // namespace

TEST(Bosch, BuildsFramesWithSplitAddressAndSevenBitChecksum) {
    const std::vector<Case> cases = {
        {[](CBosch& p) { return p.Preset(1, 5, 1); }, "86 00 00 07 05 05 17"},
        {[](CBosch& p) { return p.Preset(1, 5, 0); }, "86 00 00 07 04 05 16"},
        {[](CBosch& p) { return p.Move(1, -0x20, 0, 0); }, "87 00 00 05 00 38 02 46"},
        {[](CBosch& p) { return p.Move(1, 0, 0, 0); }, "87 00 00 05 00 00 00 0C"},
        {[](CBosch& p) { return p.Move(1, 2, 0, 0); }, "87 00 00 05 00 08 01 15"},
        {[](CBosch& p) { return p.Move(1, 11, 0, 0); }, "87 00 00 05 00 08 01 15"},
        {[](CBosch& p) { return p.Move(1, 12, 0, 0); }, "87 00 00 05 00 10 01 1D"},
        {[](CBosch& p) { return p.Move(1, 64, 0, 0); }, "87 00 00 05 00 78 01 05"},
        {[](CBosch& p) { return p.Move(1, 200, 0, 0); }, "87 00 00 05 00 88 01 15"},
        {[](CBosch& p) { return p.Move(1, 0, -64, 0); }, "87 00 00 05 0F 00 04 1F"},
        {[](CBosch& p) { return p.Move(1, 0, 8, 0); }, "87 00 00 05 01 00 08 15"},
        {[](CBosch& p) { return p.Move(1, 0, 0, 1); }, "87 00 00 05 10 00 20 3C"},
        {[](CBosch& p) { return p.Move(1, 0, 0, -8); }, "87 00 00 05 F0 00 10 0C"},
        {[](CBosch& p) { return p.Move(1, 0, 64, 8); }, "87 00 00 05 FF 00 28 33"},
        {[](CBosch& p) { return p.Move(1, 0, 64, 9); }, "87 00 00 05 1F 00 28 53"},
        {[](CBosch& p) { return p.Move(1, -40, 40, -2); }, "87 00 00 05 39 48 1A 27"},
        {[](CBosch& p) { return p.Move(16383, 0, 0, 0); }, "87 7F 7E 05 00 00 00 09"},
        {[](CBosch& p) { return p.Move(129, 0, 0, 0); }, "87 01 00 05 00 00 00 0D"},
        {[](CBosch& p) { return p.Move(16385, 0, 0, 0); }, "87 80 00 05 00 00 00 0C"},
        {[](CBosch& p) { return p.Move(0, 0, 0, 0); }, "87 FF 7F 05 00 00 00 0A"},
        {[](CBosch& p) { return p.Iris(1, 1); }, "87 00 00 05 00 04 00 10"},
        {[](CBosch& p) { return p.Iris(1, -1); }, "87 00 00 05 00 02 00 0E"},
        {[](CBosch& p) { return p.Iris(1, 0); }, "87 00 00 05 00 00 00 0C"},
        {[](CBosch& p) { return p.Focus(1, -1); }, "87 00 00 05 00 01 00 0D"},
        {[](CBosch& p) { return p.Focus(1, 1); }, "87 00 00 05 00 00 40 4C"},
        {[](CBosch& p) { return p.Focus(1, 0); }, "87 00 00 05 00 00 00 0C"},
        {[](CBosch& p) { return p.Preset(1, 200, 1); }, "86 00 00 07 15 48 6A"},
        {[](CBosch& p) { return p.Preset(300, 1, 0); }, "86 02 2B 07 04 01 3F"},
        {[](CBosch& p) { return p.Preset(1, 5, 2); }, ""},
        {[](CBosch& p) { return p.Preset(1, 5, 3); }, ""},
        {[](CBosch& p) { return p.RawCommand(1, 0x05000000); }, "87 00 00 05 00 00 00 0C"},
        {[](CBosch& p) { return p.RawCommand(1, 0x08123456); }, "87 00 00 08 12 34 56 2B"},
        {[](CBosch& p) { return p.RawCommand(1, 0x01020304); }, "86 00 00 02 03 04 0F 00"},
        {[](CBosch& p) { return p.RawCommand(1, 0xFF050607); }, "86 00 00 05 06 07 18 00"},
        {[](CBosch& p) { return p.RawCommand(1, 1); }, "86 00 00 00 00 01 07 00"},
        {[](CBosch& p) { return p.StopAxes(1, 32, 0, 0, 1, 1); }, ""},
        {[](CBosch& p) { return p.Pan(1, 32); }, ""},
        {[](CBosch& p) { return p.Tilt(1, 32); }, ""},
        {[](CBosch& p) { return p.Zoom(1, 2); }, ""},
        {[](CBosch& p) { return p.SetZoomSpeed(1, 2); }, ""},
        {[](CBosch& p) { return p.AutoIris(1, 1); }, ""},
        {[](CBosch& p) { return p.AutoFocus(1, 1); }, ""},
        {[](CBosch& p) { return p.Menu(1, 1); }, ""},
        {[](CBosch& p) { return p.MenuEnter(1, 1); }, ""},
        {[](CBosch& p) { return p.MenuNavigate(1, 0, 0, 1); }, ""},
        {[](CBosch& p) { return p.Flip(1, 0); }, ""},
        {[](CBosch& p) { return p.ApplePeel(1, 0); }, ""},
        {[](CBosch& p) { return p.Pattern(1, 1, 3); }, ""},
        {[](CBosch& p) { return p.PassThrough(1, vorna_test::FromHex("86 00")); }, "86 00"},
    };
    for (size_t row = 0; row < cases.size(); ++row) {
        SCOPED_TRACE("row " + std::to_string(row) + ": " + cases[row].hex);
        CBosch protocol;
        EXPECT_EQ(Hex(cases[row].build(protocol)), cases[row].hex);
    }
}

TEST(Bosch, RegisteredWithItsCapabilities) {
    ProtocolTable table;
    FillProtocolTable(table);
    auto* protocol = dynamic_cast<CBosch*>(FindProtocol(table, "Bosch"));
    ASSERT_NE(protocol, nullptr);
    const vorna_test::Capabilities expected{99, 1, 16383, false, 0, 0, false, 0, 0, 250, false, false, false, false, true};
    EXPECT_EQ(vorna_test::CapabilitiesOf(*protocol), expected);
}
