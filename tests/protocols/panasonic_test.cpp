#include "protocols/panasonic.h"

#include <gtest/gtest.h>

#include "support/frame_rows.h"

using namespace vorna;
using vorna_test::Notation;

// Frames are written as text, with \2 for STX and \3 for ETX.
TEST(Panasonic, Frames) {
    CPanasonic protocol;
    vorna_test::ExpectFrames(protocol, {
        {[](auto& p) { return p.Move(1, 0, 0, 0); }, "\2AD01;GC7:9028100\3"},
        {[](auto& p) { return p.Move(12, -0x20, 0, 0); }, "\2AD12;GC7:9028870\3"},
        {[](auto& p) { return p.Move(1, -1, 0, 0); }, "\2AD01;GC7:9028800\3"},
        {[](auto& p) { return p.Move(1, -5, 0, 0); }, "\2AD01;GC7:9028810\3"},
        {[](auto& p) { return p.Move(1, 64, 0, 0); }, "\2AD01;GC7:9028CF0\3"},
        {[](auto& p) { return p.Move(1, 65, 0, 0); }, "\2AD01;GC7:9028C00\3"},
        {[](auto& p) { return p.Move(1, 0, 64, 0); }, "\2AD01;GC7:9028A0F\3"},
        {[](auto& p) { return p.Move(1, 0, -1, 0); }, "\2AD01;GC7:9028E00\3"},
        {[](auto& p) { return p.Move(1, -8, 8, 0); }, "\2AD01;GC7:9028911\3"},
        {[](auto& p) { return p.Move(1, -8, -9, 0); }, "\2AD01;GC7:9028F12\3"},
        {[](auto& p) { return p.Move(1, 8, 8, 0); }, "\2AD01;GC7:9028B11\3"},
        {[](auto& p) { return p.Move(1, 13, -32, -2); }, "\2AD01;GC7:9025D37\3"},
        {[](auto& p) { return p.Move(1, 0, 0, 5); }, "\2AD01;GC7:9020100\3"},
        {[](auto& p) { return p.Move(1, 0, 0, -4); }, "\2AD01;GC7:9027100\3"},
        {[](auto& p) { return p.Move(100, 0, 0, 0); }, "\2AD100;GC7:9028100\3"},
        {[](auto& p) { return p.Preset(1, 3, 1); }, "\2AD01;GC7:9030002\3"},
        {[](auto& p) { return p.Preset(1, 3, 0); }, "\2AD01;GC7:9030066\3"},
        {[](auto& p) { return p.Preset(1, 0, 1); }, "\2AD01;GC7:90300FFFFFFFF\3"},
        {[](auto& p) { return p.Preset(1, 3, 2) + p.Preset(1, 3, 5); }, ""},
        {[](auto& p) { return p.Iris(1, 1); }, "\2AD01;GC7:0021002\3"},
        {[](auto& p) { return p.Iris(1, -1); }, "\2AD01;GC7:0021003\3"},
        {[](auto& p) { return p.Iris(1, 0); }, "\2AD01;GC7:0021004\3"},
        {[](auto& p) { return p.Focus(1, 1); }, "\2AD01;GC7:9034000\3"},
        {[](auto& p) { return p.Focus(1, -1); }, "\2AD01;GC7:9034004\3"},
        {[](auto& p) { return p.Focus(1, 0); }, "\2AD01;GC7:9034008\3"},
        {[](auto& p) { return p.AutoIris(1, 1); }, "\2AD01;GC7:0021032\3\2AD01;GC7:0021005\3"},
        {[](auto& p) { return p.AutoIris(1, 0); }, "\2AD01;GC7:0021034\3\2AD01;GC7:0021005\3"},
        {[](auto& p) { return p.AutoFocus(1, 1); }, "\2AD01;GC7:9030055\3\2AD01;GC7:9028100\3"},
        {[](auto& p) { return p.AutoFocus(1, 0); }, "\2AD01;GC7:9030056\3"},
        {[](auto& p) { return p.RawCommand(1, 0x1234a); }, "\2AD01;GC7:001234A\3"},
        {[](auto& p) { return p.RawCommand(1, 0xFFFFFFFF); }, "\2AD01;GC7:FFFFFFFF\3"},
        {[](auto& p) { return p.Menu(1, 1); }, "\2AD01;GC7:0021940\3"},
        {[](auto& p) { return p.Menu(1, -1); }, "\2AD01;GC7:0021940\3"},
        {[](auto& p) { return p.Menu(1, 0); }, "\2AD01;GC7:0021941\3"},
        {[](auto& p) { return p.MenuNavigate(1, 1, 0, 0); }, "\2AD01;GC7:0021942\3"},
        {[](auto& p) { return p.MenuNavigate(1, -1, 1, 1); }, "\2AD01;GC7:0021944\3"},
        {[](auto& p) { return p.MenuNavigate(1, 0, 1, 1); }, "\2AD01;GC7:0021943\3"},
        {[](auto& p) { return p.MenuNavigate(1, 0, -1, 0); }, "\2AD01;GC7:0021945\3"},
        {[](auto& p) { return p.MenuNavigate(1, 0, 0, 1); }, "\2AD01;GC7:002194A\3"},
        {[](auto& p) { return p.MenuNavigate(1, 0, 0, 0); }, ""},
        {[](auto& p) { return p.Flip(1, 0); }, "\2AD01;GC7:20213D1\3"},
        {[](auto& p) { return p.Pattern(1, 5, 0); }, "\2AD01;GC7:2021494\3"},
        {[](auto& p) { return p.Pattern(1, 5, 1); }, "\2AD01;GC7:2021491\3"},
        {[](auto& p) { return p.Pattern(1, 5, 2); }, ""},
        {[](auto& p) { return p.Pattern(1, 5, 3); }, "\2AD01;GC7:2021490\3"},
    }, Notation::kText);
}
