#include "protocols/pelco_d.h"

#include <gtest/gtest.h>

#include <climits>
#include <vector>

#include "support/frame_rows.h"

using namespace vorna;
using vorna_test::ExpectFrames;
using vorna_test::FrameRow;
using vorna_test::Hex;

namespace {

// Builders that both classes answer alike.
const std::vector<FrameRow<CPelcoD>> kSharedFrames = {
    {[](auto& p) { return p.Move(1, -0x20, 0, 0); }, "FF 01 00 04 1F 00 24"},
    {[](auto& p) { return p.Move(1, 0, 0, 0); }, "FF 01 00 00 00 00 01"},
    {[](auto& p) { return p.Move(1, 1, 0, 0); }, "FF 01 00 02 00 00 03"},
    {[](auto& p) { return p.Move(7, -3, 5, 0); }, "FF 07 00 0C 02 04 19"},
    {[](auto& p) { return p.Move(1, 0, -64, 0); }, "FF 01 00 10 00 3F 50"},
    {[](auto& p) { return p.Move(1, 0, 0, 5); }, "FF 01 00 20 00 00 21"},
    {[](auto& p) { return p.Move(1, 0, 0, -1); }, "FF 01 00 40 00 00 41"},
    {[](auto& p) { return p.Move(1, 65, 0, 0); }, "FF 01 00 02 40 00 43"},
    {[](auto& p) { return p.Move(1, -257, 0, 0); }, "FF 01 00 04 00 00 05"},
    {[](auto& p) { return p.Move(1, INT_MIN, 0, 0); }, "FF 01 00 04 FF 00 04"},
    {[](auto& p) { return p.Move(0xFF, 0x40, 0x40, 0); }, "FF FF 00 0A 3F 3F 87"},
    {[](auto& p) { return p.Preset(2, 5, 0); }, "FF 02 00 03 00 05 0A"},
    {[](auto& p) { return p.Preset(2, 5, 1); }, "FF 02 00 07 00 05 0E"},
    {[](auto& p) { return p.Preset(2, 5, 2); }, "FF 02 00 05 00 05 0C"},
    {[](auto& p) { return p.Preset(2, 5, 9); }, "FF 02 00 00 00 05 07"},
    {[](auto& p) { return p.Preset(1, 300, 1); }, "FF 01 00 07 00 2C 34"},
    {[](auto& p) { return p.SetZoomSpeed(1, 2); }, "FF 01 00 25 00 02 28"},
    {[](auto& p) { return p.Iris(1, 1); }, "FF 01 02 00 00 00 03"},
    {[](auto& p) { return p.Iris(1, -1); }, "FF 01 04 00 00 00 05"},
    {[](auto& p) { return p.Iris(1, 0); }, "FF 01 00 00 00 00 01"},
    {[](auto& p) { return p.Focus(1, 1); }, "FF 01 01 00 00 00 02"},
    {[](auto& p) { return p.Focus(1, -1); }, "FF 01 00 80 00 00 81"},
    {[](auto& p) { return p.Focus(1, 0); }, "FF 01 00 00 00 00 01"},
    {[](auto& p) { return p.AutoIris(1, 0); }, "FF 01 00 2D 00 02 30"},
    {[](auto& p) { return p.AutoIris(1, 1); }, "FF 01 00 2D 00 00 2E FF 01 00 41 00 80 C2"},
    {[](auto& p) { return p.AutoFocus(1, 1); }, "FF 01 00 2B 00 00 2C"},
    {[](auto& p) { return p.AutoFocus(1, 0); }, "FF 01 00 2B 00 02 2E"},
    {[](auto& p) { return p.RawCommand(3, 0x00090000); }, "FF 03 00 09 00 00 0C"},
    {[](auto& p) { return p.RawCommand(1, 0x12345678); }, "FF 01 12 34 56 78 15"},
    {[](auto& p) { return p.Flip(1, 0); }, "FF 01 00 07 00 21 29"},
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
        {[](auto& p) { return p.Menu(1, 7); }, "FF 01 00 03 00 5F 63"},
        {[](auto& p) { return p.Menu(1, 0) + p.Menu(1, -1); }, ""},
        {[](auto& p) { return p.Pattern(1, 2, 0); }, "FF 01 00 1F 00 02 22"},
        {[](auto& p) { return p.Pattern(1, 2, 1); }, "FF 01 00 21 00 00 22"},
        {[](auto& p) { return p.Pattern(1, 2, 2) + p.Pattern(1, 2, 4); }, ""},
        {[](auto& p) { return p.Pattern(1, 2, 3); }, "FF 01 00 23 00 02 26"},
    });
}

TEST(PelcoD, HsdInheritsEverythingButMenuAndPattern) {
    CHSDPelcoD protocol;
    ExpectFrames<CPelcoD>(protocol, kSharedFrames);
    ExpectFrames<CPelcoD>(protocol, {
        {[](auto& p) { return p.Menu(1, 1); }, "FF 01 00 07 00 5A 62"},
        {[](auto& p) { return p.Menu(1, 0); }, "FF 01 04 00 00 00 05 FF 01 00 00 00 00 01"},
        {[](auto& p) { return p.Pattern(4, 0, 3); }, "FF 04 00 02 00 00 06 FF 04 00 07 00 4F 5A"},
        {[](auto& p) { return p.Pattern(4, 1, 3); }, "FF 04 00 02 00 00 06 FF 04 00 07 00 50 5B"},
        {[](auto& p) { return p.Pattern(4, 2, 3); }, "FF 04 00 02 00 00 06 FF 04 00 07 00 51 5C"},
        {[](auto& p) { return p.Pattern(4, 3, 3) + p.Pattern(4, -1, 3); }, ""},
        {[](auto& p) { return p.Pattern(4, 0, 0) + p.Pattern(4, 0, 1) + p.Pattern(4, 0, 2); }, ""},
    });
}

TEST(PelcoD, MenuIsBuiltThroughTheObjectsOwnPresetAndIris) {
    CRenumberedPelcoD protocol;
    EXPECT_EQ(Hex(protocol.Menu(1, 1)), "FF 01 00 03 00 60 64");
    EXPECT_EQ(Hex(protocol.MenuEnter(1, 0)), "FF 01 04 00 00 00 05");
}
