#include "protocols/bosch.h"

#include <gtest/gtest.h>

#include "support/frame_rows.h"

using namespace vorna;

TEST(Bosch, BuildsFramesWithSplitAddressAndSevenBitChecksum) {
    CBosch protocol;
    vorna_test::ExpectFrames(protocol, {
        {[](auto& p) { return p.Preset(1, 5, 1); }, "86 00 00 07 05 05 17"},
        {[](auto& p) { return p.Preset(1, 5, 0); }, "86 00 00 07 04 05 16"},
        {[](auto& p) { return p.Move(1, -0x20, 0, 0); }, "87 00 00 05 00 38 02 46"},
        {[](auto& p) { return p.Move(1, 0, 0, 0); }, "87 00 00 05 00 00 00 0C"},
        {[](auto& p) { return p.Move(1, 2, 0, 0); }, "87 00 00 05 00 08 01 15"},
        {[](auto& p) { return p.Move(1, 5, 0, 0); }, "87 00 00 05 00 08 01 15"},
        {[](auto& p) { return p.Move(1, 12, 0, 0); }, "87 00 00 05 00 10 01 1D"},
        {[](auto& p) { return p.Move(1, 64, 0, 0); }, "87 00 00 05 00 78 01 05"},
        {[](auto& p) { return p.Move(1, 200, 0, 0); }, "87 00 00 05 00 88 01 15"},
        {[](auto& p) { return p.Move(1, 0, -64, 0); }, "87 00 00 05 0F 00 04 1F"},
        {[](auto& p) { return p.Move(1, 0, 0, 1); }, "87 00 00 05 10 00 20 3C"},
        {[](auto& p) { return p.Move(1, 0, 0, -8); }, "87 00 00 05 F0 00 10 0C"},
        {[](auto& p) { return p.Move(1, 0, 64, 8); }, "87 00 00 05 FF 00 28 33"},
        {[](auto& p) { return p.Move(1, 0, 64, 9); }, "87 00 00 05 1F 00 28 53"},
        {[](auto& p) { return p.Move(1, -40, 40, -2); }, "87 00 00 05 39 48 1A 27"},
        {[](auto& p) { return p.Move(16383, 0, 0, 0); }, "87 7F 7E 05 00 00 00 09"},
        {[](auto& p) { return p.Move(16385, 0, 0, 0); }, "87 80 00 05 00 00 00 0C"},
        {[](auto& p) { return p.Iris(1, 1); }, "87 00 00 05 00 04 00 10"},
        {[](auto& p) { return p.Iris(1, -1); }, "87 00 00 05 00 02 00 0E"},
        {[](auto& p) { return p.Iris(1, 0); }, "87 00 00 05 00 00 00 0C"},
        {[](auto& p) { return p.Focus(1, -1); }, "87 00 00 05 00 01 00 0D"},
        {[](auto& p) { return p.Focus(1, 1); }, "87 00 00 05 00 00 40 4C"},
        {[](auto& p) { return p.Focus(1, 0); }, "87 00 00 05 00 00 00 0C"},
        {[](auto& p) { return p.Preset(1, 200, 1); }, "86 00 00 07 15 48 6A"},
        {[](auto& p) { return p.Preset(1, 5, 2) + p.Preset(1, 5, 3); }, ""},
        {[](auto& p) { return p.RawCommand(1, 0x05000000); }, "87 00 00 05 00 00 00 0C"},
        {[](auto& p) { return p.RawCommand(1, 0x08123456); }, "87 00 00 08 12 34 56 2B"},
        {[](auto& p) { return p.RawCommand(1, 0x01020304); }, "86 00 00 02 03 04 0F 00"},
    });
}
