#include "protocols/pelco_p.h"

#include <gtest/gtest.h>

#include "support/frame_rows.h"

using namespace vorna;
using vorna_test::ExpectFrames;
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
    CPelcoP protocol;
    ExpectFrames(protocol, {
        {[](auto& p) { return p.Preset(1, 5, 1); }, "A0 00 00 07 00 05 AF 0D"},
        {[](auto& p) { return p.Preset(1, 5, 2); }, "A0 00 00 05 00 05 AF 0F"},
        {[](auto& p) { return p.Move(2, -0x20, 0, 0); }, "A0 01 00 04 1F 00 AF 15"},
        {[](auto& p) { return p.Move(1, 0, 0, 0); }, "A0 00 00 00 00 00 AF 0F"},
        {[](auto& p) { return p.Move(0, 0, 0, 0); }, "A0 FF 00 00 00 00 AF F0"},
        {[](auto& p) { return p.Move(1, 3, -2, -1); }, "A0 00 00 52 02 01 AF 5E"},
        {[](auto& p) { return p.Move(1, 0, 0, 7); }, "A0 00 00 20 00 00 AF 2F"},
        {[](auto& p) { return p.Move(1, 0, 65, 0); }, "A0 00 00 08 00 40 AF 47"},
        {[](auto& p) { return p.SetZoomSpeed(1, 3); }, "A0 00 00 25 00 03 AF 29"},
        {[](auto& p) { return p.Iris(1, 1); }, "A0 00 04 00 00 00 AF 0B"},
        {[](auto& p) { return p.Iris(1, -1); }, "A0 00 08 00 00 00 AF 07"},
        {[](auto& p) { return p.Iris(1, 0); }, "A0 00 00 00 00 00 AF 0F"},
        {[](auto& p) { return p.Focus(1, 1); }, "A0 00 02 00 00 00 AF 0D"},
        {[](auto& p) { return p.Focus(1, -1); }, "A0 00 01 00 00 00 AF 0E"},
        {[](auto& p) { return p.RawCommand(1, 0x12345678); }, "A0 00 12 34 56 78 AF 07"},
        {[](auto& p) { return p.Menu(3, 1); }, "A0 02 00 03 00 5F AF 51"},
        {[](auto& p) { return p.Menu(3, 0); }, ""},
    });
}

TEST(PelcoP, MenuIsBuiltThroughTheObjectsOwnPreset) {
    CRenumberedPelcoP protocol;
    EXPECT_EQ(Hex(protocol.Menu(1, 1)), "A0 00 00 03 00 60 AF 6C");
}
