#include "protocols/ge_ascii.h"

#include <gtest/gtest.h>

#include "support/frame_rows.h"

using namespace vorna;

TEST(GeAscii, BuildsSevenCharacterFrames) {
    CGEASCII protocol;
    vorna_test::ExpectFrames(protocol, {
        {[](auto& p) { return p.Move(7, 64, 0, 0); }, "31R007~"},
        {[](auto& p) { return p.Move(7, -3, 0, 0); }, "01L007~"},
        {[](auto& p) { return p.Move(7, 6, 0, 0); }, "02R007~"},
        {[](auto& p) { return p.Move(7, 1, 0, 0); }, "01R007~"},
        {[](auto& p) { return p.Move(7, -65, 0, 0); }, "31L007~"},
        {[](auto& p) { return p.Move(123, 10, -10, 1); }, "04R123~04D123~07I123~"},
        {[](auto& p) { return p.Move(7, 0, 24, 0); }, "11U007~"},
        {[](auto& p) { return p.Move(7, 0, 0, -2); }, "15O007~"},
        {[](auto& p) { return p.Move(7, 0, 0, 0); }, ""},
        {[](auto& p) { return p.StopAxes(5, -1, 0, 0, 1, 0); }, "00l005~00p005~"},
        {[](auto& p) { return p.StopAxes(5, 0, 0, 0, 1, 1); }, "00n005~00p005~"},
        {[](auto& p) { return p.StopAxes(5, 1, -1, 1, -1, -1); }, "00r005~00d005~00i005~00f005~00c005~"},
        {[](auto& p) { return p.StopAxes(5, 0, 3, -2, 0, 0); }, "00u005~00o005~"},
        {[](auto& p) { return p.StopAxes(5, 0, 0, 0, 0, 0); }, ""},
        {[](auto& p) { return p.Preset(5, 12, 0); }, "12Q005~"},
        {[](auto& p) { return p.Preset(5, 12, 1); }, "12E005~"},
        {[](auto& p) { return p.Preset(5, 100, 1); }, ":0E005~"},
        {[](auto& p) { return p.Preset(5, 12, 2); }, ""},
        {[](auto& p) { return p.Iris(5, 1); }, "00P005~"},
        {[](auto& p) { return p.Iris(5, -1); }, "00C005~"},
        {[](auto& p) { return p.Iris(5, 0); }, ""},
        {[](auto& p) { return p.Focus(5, 1); }, "00N005~"},
        {[](auto& p) { return p.Focus(5, -1); }, "00F005~"},
        {[](auto& p) { return p.AutoFocus(300, 1); }, "00*300~"},
        {[](auto& p) { return p.AutoFocus(300, 0); }, ""},
        {[](auto& p) { return p.RawCommand(1, 0x00414243); }, "ABC001~"},
        {[](auto& p) { return p.RawCommand(1, 0xFF414243); }, "ABC001~"},
        {[](auto& p) { return p.RawCommand(1, 1); }, {"\0\0\1" "001~", 7}},
        {[](auto& p) { return p.Iris(1000, 1); }, "00P:00~"},
        {[](auto& p) { return p.Iris(0u - 5, 1); }, "00P00+~"},
    }, vorna_test::Notation::kText);
}
