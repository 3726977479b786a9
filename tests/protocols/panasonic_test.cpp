#include "protocols/panasonic.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <string>
#include <vector>

#include "protocols/protocol_table.h"
#include "support/protocol_capabilities.h"

using namespace vorna;

// Frames are written as text, with \2 for STX and \3 for ETX.
TEST(Panasonic, Frames) {
    struct Case {
        const char* what;
        std::function<Bytes(CPanasonic&)> build;
        Bytes text;  // "" = unsupported
    };
    const std::vector<Case> cases = {
        {"stop", [](CPanasonic& p) { return p.Move(1, 0, 0, 0); }, "\2AD01;GC7:9028100\3"},
        {"pan left at 0x20", [](CPanasonic& p) { return p.Move(12, -0x20, 0, 0); }, "\2AD12;GC7:9028870\3"},
        {"pan left slowest", [](CPanasonic& p) { return p.Move(1, -1, 0, 0); }, "\2AD01;GC7:9028800\3"},
        {"pan left at 5", [](CPanasonic& p) { return p.Move(1, -5, 0, 0); }, "\2AD01;GC7:9028810\3"},
        {"pan right at 64", [](CPanasonic& p) { return p.Move(1, 64, 0, 0); }, "\2AD01;GC7:9028CF0\3"},
        {"pan speed 65 wraps", [](CPanasonic& p) { return p.Move(1, 65, 0, 0); }, "\2AD01;GC7:9028C00\3"},
        {"pan speed INT_MIN", [](CPanasonic& p) { return p.Move(1, INT_MIN, 0, 0); }, "\2AD01;GC7:90288F0\3"},
        {"tilt up at 64", [](CPanasonic& p) { return p.Move(1, 0, 64, 0); }, "\2AD01;GC7:9028A0F\3"},
        {"tilt down", [](CPanasonic& p) { return p.Move(1, 0, -1, 0); }, "\2AD01;GC7:9028E00\3"},
        {"left and up", [](CPanasonic& p) { return p.Move(1, -8, 8, 0); }, "\2AD01;GC7:9028911\3"},
        {"left and down", [](CPanasonic& p) { return p.Move(1, -8, -9, 0); }, "\2AD01;GC7:9028F12\3"},
        {"right and up", [](CPanasonic& p) { return p.Move(1, 8, 8, 0); }, "\2AD01;GC7:9028B11\3"},
        {"right and down", [](CPanasonic& p) { return p.Move(1, 8, -8, 0); }, "\2AD01;GC7:9028D11\3"},
        {"zoom in slowest", [](CPanasonic& p) { return p.Move(1, 0, 0, 1); }, "\2AD01;GC7:9020100\3"},
        {"zoom in at 4", [](CPanasonic& p) { return p.Move(1, 0, 0, 4); }, "\2AD01;GC7:9023100\3"},
        {"zoom in at 5 wraps", [](CPanasonic& p) { return p.Move(1, 0, 0, 5); }, "\2AD01;GC7:9020100\3"},
        {"zoom out slowest", [](CPanasonic& p) { return p.Move(1, 0, 0, -1); }, "\2AD01;GC7:9024100\3"},
        {"zoom out at 4", [](CPanasonic& p) { return p.Move(1, 0, 0, -4); }, "\2AD01;GC7:9027100\3"},
        {"all axes", [](CPanasonic& p) { return p.Move(1, 13, -32, -2); }, "\2AD01;GC7:9025D37\3"},
        {"address 5", [](CPanasonic& p) { return p.Move(5, 0, 0, 0); }, "\2AD05;GC7:9028100\3"},
        {"address 0", [](CPanasonic& p) { return p.Move(0, 0, 0, 0); }, "\2AD00;GC7:9028100\3"},
        {"address 100", [](CPanasonic& p) { return p.Move(100, 0, 0, 0); }, "\2AD100;GC7:9028100\3"},
        {"go to preset 3", [](CPanasonic& p) { return p.Preset(1, 3, 1); }, "\2AD01;GC7:9030002\3"},
        {"store preset 3", [](CPanasonic& p) { return p.Preset(1, 3, 0); }, "\2AD01;GC7:9030066\3"},
        {"go to preset 0", [](CPanasonic& p) { return p.Preset(1, 0, 1); }, "\2AD01;GC7:90300FFFFFFFF\3"},
        {"store preset 200", [](CPanasonic& p) { return p.Preset(1, 200, 0); }, "\2AD01;GC7:9030012B\3"},
        {"store preset INT_MAX", [](CPanasonic& p) { return p.Preset(1, INT_MAX, 0); }, "\2AD01;GC7:9030080000062\3"},
        {"clear preset", [](CPanasonic& p) { return p.Preset(1, 3, 2); }, ""},
        {"unknown preset action", [](CPanasonic& p) { return p.Preset(1, 3, 5); }, ""},
        {"iris open", [](CPanasonic& p) { return p.Iris(1, 1); }, "\2AD01;GC7:0021002\3"},
        {"iris close", [](CPanasonic& p) { return p.Iris(1, -1); }, "\2AD01;GC7:0021003\3"},
        {"iris stop", [](CPanasonic& p) { return p.Iris(1, 0); }, "\2AD01;GC7:0021004\3"},
        {"focus near", [](CPanasonic& p) { return p.Focus(1, 1); }, "\2AD01;GC7:9034000\3"},
        {"focus far", [](CPanasonic& p) { return p.Focus(1, -1); }, "\2AD01;GC7:9034004\3"},
        {"focus stop", [](CPanasonic& p) { return p.Focus(1, 0); }, "\2AD01;GC7:9034008\3"},
        {"auto iris on", [](CPanasonic& p) { return p.AutoIris(1, 1); },
         "\2AD01;GC7:0021032\3\2AD01;GC7:0021005\3"},
        {"auto iris off", [](CPanasonic& p) { return p.AutoIris(1, 0); },
         "\2AD01;GC7:0021034\3\2AD01;GC7:0021005\3"},
        {"auto focus on stops motion", [](CPanasonic& p) { return p.AutoFocus(1, 1); },
         "\2AD01;GC7:9030055\3\2AD01;GC7:9028100\3"},
        {"auto focus off", [](CPanasonic& p) { return p.AutoFocus(1, 0); }, "\2AD01;GC7:9030056\3"},
        {"raw", [](CPanasonic& p) { return p.RawCommand(1, 0x1234a); }, "\2AD01;GC7:001234A\3"},
        {"raw eight digits", [](CPanasonic& p) { return p.RawCommand(1, 0xFFFFFFFF); }, "\2AD01;GC7:FFFFFFFF\3"},
        {"menu open", [](CPanasonic& p) { return p.Menu(1, 1); }, "\2AD01;GC7:0021940\3"},
        {"menu open, any non-zero", [](CPanasonic& p) { return p.Menu(1, -1); }, "\2AD01;GC7:0021940\3"},
        {"menu close", [](CPanasonic& p) { return p.Menu(1, 0); }, "\2AD01;GC7:0021941\3"},
        {"menu up", [](CPanasonic& p) { return p.MenuNavigate(1, 1, 0, 0); }, "\2AD01;GC7:0021942\3"},
        {"menu down", [](CPanasonic& p) { return p.MenuNavigate(1, -1, 0, 0); }, "\2AD01;GC7:0021944\3"},
        {"menu right", [](CPanasonic& p) { return p.MenuNavigate(1, 0, 1, 0); }, "\2AD01;GC7:0021943\3"},
        {"menu left", [](CPanasonic& p) { return p.MenuNavigate(1, 0, -1, 0); }, "\2AD01;GC7:0021945\3"},
        {"menu enter", [](CPanasonic& p) { return p.MenuNavigate(1, 0, 0, 1); }, "\2AD01;GC7:002194A\3"},
        {"vertical wins", [](CPanasonic& p) { return p.MenuNavigate(1, -1, 1, 1); }, "\2AD01;GC7:0021944\3"},
        {"horizontal before enter", [](CPanasonic& p) { return p.MenuNavigate(1, 0, 1, 1); }, "\2AD01;GC7:0021943\3"},
        {"menu navigate nothing", [](CPanasonic& p) { return p.MenuNavigate(1, 0, 0, 0); }, ""},
        {"flip", [](CPanasonic& p) { return p.Flip(1, 0); }, "\2AD01;GC7:20213D1\3"},
        {"record pattern", [](CPanasonic& p) { return p.Pattern(1, 5, 0); }, "\2AD01;GC7:2021494\3"},
        {"stop recording", [](CPanasonic& p) { return p.Pattern(1, 5, 1); }, "\2AD01;GC7:2021491\3"},
        {"run pattern", [](CPanasonic& p) { return p.Pattern(1, 5, 3); }, "\2AD01;GC7:2021490\3"},
        {"pattern action 2", [](CPanasonic& p) { return p.Pattern(1, 5, 2); }, ""},
        {"stop axes", [](CPanasonic& p) { return p.StopAxes(1, 5, 0, 0, 0, 0); }, ""},
        {"pan", [](CPanasonic& p) { return p.Pan(1, 5); }, ""},
        {"tilt", [](CPanasonic& p) { return p.Tilt(1, 5); }, ""},
        {"zoom", [](CPanasonic& p) { return p.Zoom(1, 5); }, ""},
        {"zoom speed", [](CPanasonic& p) { return p.SetZoomSpeed(1, 2); }, ""},
        {"menu enter", [](CPanasonic& p) { return p.MenuEnter(1, 1); }, ""},
        {"apple peel", [](CPanasonic& p) { return p.ApplePeel(1, 0); }, ""},
        {"pass through", [](CPanasonic& p) { return p.PassThrough(1, "\2AD01;GC7:9028100\3"); },
         "\2AD01;GC7:9028100\3"},
    };
    CPanasonic protocol;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(c.build(protocol), c.text);
    }
}

TEST(Panasonic, CapabilitiesOfTheRegisteredName) {
    ProtocolTable table;
    FillProtocolTable(table);
    auto* protocol = dynamic_cast<CPanasonic*>(FindProtocol(table, "Panasonic"));
    ASSERT_NE(protocol, nullptr);
    const vorna_test::Capabilities expected{64, 0, 96, true, 0, 3, true, 0, 1, 250, true, true, true, false, true};
    EXPECT_EQ(vorna_test::CapabilitiesOf(*protocol), expected);
}
