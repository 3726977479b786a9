#include "protocols/ge_impac.h"

#include <gtest/gtest.h>

#include "support/frame_rows.h"

using namespace vorna;

TEST(GeImpac, BuildsCountedFramesWithTwosComplementChecksum) {
    CGEImpac protocol;
    vorna_test::ExpectFrames(protocol, {
        {[](auto& p) { return p.Iris(5, 1); }, "FF 07 20 50 80 00 05 00 04"},
        {[](auto& p) { return p.Iris(5, -1); }, "FF 07 20 43 80 00 05 00 11"},
        {[](auto& p) { return p.Iris(5, 0); }, ""},
        {[](auto& p) { return p.Focus(5, 1); }, "FF 07 20 4E 80 00 05 00 06"},
        {[](auto& p) { return p.Focus(5, -1); }, "FF 07 20 46 80 00 05 00 0E"},
        {[](auto& p) { return p.Move(5, 20, -2, 2); }, "FF 09 09 14 00 00 05 8A 01 90 BA"},
        {[](auto& p) { return p.Move(5, 0, 0, 0); }, "FF 09 09 14 00 00 05 00 00 00 D5"},
        {[](auto& p) { return p.Move(5, 1, -1, 0); }, "FF 09 09 14 00 00 05 81 01 00 53"},
        {[](auto& p) { return p.Move(5, -4, -5, 0); }, "FF 09 09 14 00 00 05 02 02 00 D1"},
        {[](auto& p) { return p.Move(5, 64, -64, 0); }, "FF 09 09 14 00 00 05 A0 20 00 15"},
        {[](auto& p) { return p.Move(5, 300, 0, 0); }, "FF 09 09 14 00 00 05 16 00 00 BF"},
        {[](auto& p) { return p.Move(5, 0, 0, -2); }, "FF 09 09 14 00 00 05 00 00 10 C5"},
        {[](auto& p) { return p.Move(5, 0, 0, 16); }, "FF 09 09 14 00 00 05 00 00 00 D5"},
        {[](auto& p) { return p.Move(5, 0, 0, -16); }, "FF 09 09 14 00 00 05 00 00 80 55"},
        {[](auto& p) { return p.Move(0x1FF, 0, 0, 0); }, "FF 09 09 14 00 00 FF 00 00 00 DB"},
        {[](auto& p) { return p.Preset(5, 3, 1); }, "FF 07 09 0B 00 00 05 02 DE"},
        {[](auto& p) { return p.Preset(5, 3, 0); }, "FF 07 09 0A 00 00 05 02 DF"},
        {[](auto& p) { return p.Preset(5, 0, 1); }, "FF 07 09 0B 00 00 05 FF E1"},
        {[](auto& p) { return p.Preset(5, 3, 2); }, ""},
        {[](auto& p) { return p.StopAxes(5, 3, 0, 0, 0, 0); }, ""},
        {[](auto& p) { return p.StopAxes(5, 0, 0, 0, -1, 0); }, "FF 07 20 63 80 00 05 00 F1"},
        {[](auto& p) { return p.StopAxes(5, 0, 0, 0, 0, -1); }, "FF 07 20 66 80 00 05 00 EE"},
        {[](auto& p) { return p.StopAxes(5, 0, 0, 0, 1, 1); }, "FF 07 20 70 80 00 05 00 E4 FF 07 20 6E 80 00 05 00 E6"},
    });
}
