#include "protocols/ge_ascii.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "protocols/protocol_table.h"
#include "support/protocol_capabilities.h"

using namespace vorna;

namespace {

using Build = std::function<Bytes(CGEASCII&)>;

struct Case {
    Build build;
    Bytes text;
};

uint32_t Signed(int address) { return static_cast<uint32_t>(address); }

}  // namespace

TEST(GeAscii, BuildsSevenCharacterFrames) {
    const std::vector<Case> cases = {
        {[](CGEASCII& p) { return p.Move(7, 64, 0, 0); }, "31R007~"},
        {[](CGEASCII& p) { return p.Move(7, -3, 0, 0); }, "01L007~"},
        {[](CGEASCII& p) { return p.Move(7, 6, 0, 0); }, "02R007~"},
        {[](CGEASCII& p) { return p.Move(7, 4, 0, 0); }, "01R007~"},
        {[](CGEASCII& p) { return p.Move(7, 1, 0, 0); }, "01R007~"},
        {[](CGEASCII& p) { return p.Move(7, -65, 0, 0); }, "31L007~"},
        {[](CGEASCII& p) { return p.Move(123, 10, -10, 1); }, "04R123~04D123~07I123~"},
        {[](CGEASCII& p) { return p.Move(7, 0, 24, 0); }, "11U007~"},
        {[](CGEASCII& p) { return p.Move(7, 0, 0, -2); }, "15O007~"},
        {[](CGEASCII& p) { return p.Move(7, 0, 0, 13); }, ":3I007~"},
        {[](CGEASCII& p) { return p.Move(7, 0, 0, 0); }, ""},
        {[](CGEASCII& p) { return p.StopAxes(5, -1, 0, 0, 1, 0); }, "00l005~00p005~"},
        {[](CGEASCII& p) { return p.StopAxes(5, 0, 0, 0, 1, 1); }, "00n005~00p005~"},
        {[](CGEASCII& p) { return p.StopAxes(5, 1, -1, 1, -1, -1); }, "00r005~00d005~00i005~00f005~00c005~"},
        {[](CGEASCII& p) { return p.StopAxes(5, 0, 3, -2, 0, 0); }, "00u005~00o005~"},
        {[](CGEASCII& p) { return p.StopAxes(5, 0, 0, 0, 0, 0); }, ""},
        {[](CGEASCII& p) { return p.Preset(5, 12, 0); }, "12Q005~"},
        {[](CGEASCII& p) { return p.Preset(5, 12, 1); }, "12E005~"},
        {[](CGEASCII& p) { return p.Preset(5, 3, 1); }, "03E005~"},
        {[](CGEASCII& p) { return p.Preset(5, 100, 1); }, ":0E005~"},
        {[](CGEASCII& p) { return p.Preset(5, 12, 2); }, ""},
        {[](CGEASCII& p) { return p.Iris(5, 1); }, "00P005~"},
        {[](CGEASCII& p) { return p.Iris(5, -1); }, "00C005~"},
        {[](CGEASCII& p) { return p.Iris(5, 0); }, ""},
        {[](CGEASCII& p) { return p.Focus(5, 1); }, "00N005~"},
        {[](CGEASCII& p) { return p.Focus(5, -1); }, "00F005~"},
        {[](CGEASCII& p) { return p.Focus(5, 0); }, ""},
        {[](CGEASCII& p) { return p.AutoFocus(300, 1); }, "00*300~"},
        {[](CGEASCII& p) { return p.AutoFocus(300, 0); }, ""},
        {[](CGEASCII& p) { return p.RawCommand(1, 0x00414243); }, "ABC001~"},
        {[](CGEASCII& p) { return p.RawCommand(1, 0xFF414243); }, "ABC001~"},
        {[](CGEASCII& p) { return p.RawCommand(1, 1); }, Bytes("\0\0\x01" "001~", 7)},
        {[](CGEASCII& p) { return p.Iris(511, 1); }, "00P511~"},
        {[](CGEASCII& p) { return p.Iris(0, 1); }, "00P000~"},
        {[](CGEASCII& p) { return p.Iris(1000, 1); }, "00P:00~"},
        {[](CGEASCII& p) { return p.Iris(Signed(-5), 1); }, "00P00+~"},
        {[](CGEASCII& p) { return p.Pan(5, 32); }, ""},
        {[](CGEASCII& p) { return p.Tilt(5, 32); }, ""},
        {[](CGEASCII& p) { return p.Zoom(5, 2); }, ""},
        {[](CGEASCII& p) { return p.SetZoomSpeed(5, 2); }, ""},
        {[](CGEASCII& p) { return p.AutoIris(5, 1); }, ""},
        {[](CGEASCII& p) { return p.Menu(5, 1); }, ""},
        {[](CGEASCII& p) { return p.MenuEnter(5, 1); }, ""},
        {[](CGEASCII& p) { return p.MenuNavigate(5, 0, 0, 1); }, ""},
        {[](CGEASCII& p) { return p.Flip(5, 0); }, ""},
        {[](CGEASCII& p) { return p.ApplePeel(5, 0); }, ""},
        {[](CGEASCII& p) { return p.Pattern(5, 1, 3); }, ""},
        {[](CGEASCII& p) { return p.PassThrough(5, "12E005~"); }, "12E005~"},
    };
    for (size_t row = 0; row < cases.size(); ++row) {
        SCOPED_TRACE("row " + std::to_string(row) + ": " + cases[row].text);
        CGEASCII protocol;
        EXPECT_EQ(cases[row].build(protocol), cases[row].text);
    }
}

TEST(GeAscii, RegisteredWithItsCapabilities) {
    ProtocolTable table;
    FillProtocolTable(table);
    auto* protocol = dynamic_cast<CGEASCII*>(FindProtocol(table, "GE-ASCII"));
    ASSERT_NE(protocol, nullptr);
    const vorna_test::Capabilities expected{64, 0, 511, false, 0, 0, false, 0, 0, 250, true, false, false, false, true};
    EXPECT_EQ(vorna_test::CapabilitiesOf(*protocol), expected);
}
