#include "core/command_executor.h"

#include <gtest/gtest.h>

#include <functional>

#include "protocols/ad_megapower.h"
#include "protocols/panasonic.h"
#include "protocols/pelco_d.h"
#include "support/fake_clock.h"
#include "support/fake_protocol.h"
#include "support/recording_host.h"

using namespace vorna;
using vorna_test::FakeProtocol;

namespace {

std::string Motions(const PtzCamera& c) {
    return "P" + std::to_string(c.panMotion) + " T" + std::to_string(c.tiltMotion) + " Z" +
           std::to_string(c.zoomMotion) + " I" + std::to_string(c.irisMotion) + " F" +
           std::to_string(c.focusMotion) + (c.menuMode ? " menu" : "");
}

}  // namespace

// One opcode on a camera in a given state: which protocol calls are made,
// what goes to the line, what is kept for repetition, and the motion state after.
TEST(ExecuteCommand, OpcodeTable) {
    struct Row {
        int opcode;
        double parm;
        std::set<std::string> unsupported;
        bool repeat;
        std::function<void(PtzCamera&)> setup;
        std::vector<std::string> calls;
        std::string sent;
        std::string kept;
        std::string motions;
    };
    auto none = [](PtzCamera&) {};
    auto menu = [](PtzCamera& c) { c.menuMode = true; };
    auto panAndTilt = [](PtzCamera& c) { c.panMotion = 32; c.tiltMotion = -5; };
    auto panOnly = [](PtzCamera& c) { c.panMotion = 32; };
    const std::set<std::string> noStops = {"StopAxes", "Pan", "Tilt", "Zoom", "Iris", "Focus"};
    const std::vector<Row> rows = {
        {9, 1.0, {}, true, none, {"AutoIris(1,1)"}, "AutoIris(1,1)", "", "P0 T0 Z0 I0 F0"},
        {10, 0, {}, true, none, {"Iris(1,1)"}, "Iris(1,1)", "Iris(1,1)", "P0 T0 Z0 I1 F0"},
        {10, 0, {}, true, menu, {"MenuNavigate(1,0,0,1)"}, "MenuNavigate(1,0,0,1)", "", "P0 T0 Z0 I0 F0 menu"},
        {11, 0, {}, false, none, {"Iris(1,-1)"}, "Iris(1,-1)", "", "P0 T0 Z0 I-1 F0"},
        {12, 0, {}, true, none, {"Focus(1,1)"}, "Focus(1,1)", "Focus(1,1)", "P0 T0 Z0 I0 F1"},
        {13, 0, {}, true, none, {"Focus(1,-1)"}, "Focus(1,-1)", "Focus(1,-1)", "P0 T0 Z0 I0 F-1"},
        {14, 0.0, {}, true, none, {"AutoFocus(1,0)"}, "AutoFocus(1,0)", "", "P0 T0 Z0 I0 F0"},
        {17, 0, {}, true, none, {"Zoom(1,2)"}, "Zoom(1,2)", "Zoom(1,2)", "P0 T0 Z2 I0 F0"},
        {18, 0, {"Zoom"}, true, panOnly, {"Zoom(1,-2)", "Move(1,32,0,-2)"}, "Move(1,32,0,-2)", "Move(1,32,0,-2)", "P32 T0 Z-2 I0 F0"},
        {30, 3.0, {}, true, none, {"SetZoomSpeed(1,3)"}, "SetZoomSpeed(1,3)", "", "P0 T0 Z0 I0 F0"},
        {31, 0, {}, true, [](PtzCamera& c) { c.zoomMotion = 2; }, {"StopAxes(1,0,0,2,0,0)"}, "StopAxes(1,0,0,2,0,0)", "", "P0 T0 Z0 I0 F0"},
        {32, 0, {}, true, panAndTilt, {"StopAxes(1,32,0,0,0,0)"}, "StopAxes(1,32,0,0,0,0)", "", "P0 T-5 Z0 I0 F0"},
        {32, 0, {"StopAxes"}, true, panOnly, {"StopAxes(1,32,0,0,0,0)", "Pan(1,0)"}, "Pan(1,0)", "", "P0 T0 Z0 I0 F0"},
        // The combined-motion stop keeps the other axes moving and is kept
        // for repetition while they move.
        {32, 0, noStops, true, panAndTilt, {"StopAxes(1,32,0,0,0,0)", "Pan(1,0)", "Move(1,0,-5,0)"}, "Move(1,0,-5,0)", "Move(1,0,-5,0)", "P0 T-5 Z0 I0 F0"},
        {32, 0, noStops, true, panOnly, {"StopAxes(1,32,0,0,0,0)", "Pan(1,0)", "Move(1,0,0,0)"}, "Move(1,0,0,0)", "", "P0 T0 Z0 I0 F0"},
        {33, 0, {}, false, none, {"Pan(1,-32)"}, "Pan(1,-32)", "", "P-32 T0 Z0 I0 F0"},
        {33, 0, {"Pan"}, true, none, {"Pan(1,-32)", "Move(1,-32,0,0)"}, "Move(1,-32,0,0)", "Move(1,-32,0,0)", "P-32 T0 Z0 I0 F0"},
        {33, 0, {}, true, menu, {"MenuNavigate(1,0,-1,0)"}, "MenuNavigate(1,0,-1,0)", "", "P0 T0 Z0 I0 F0 menu"},
        {34, 0, {}, true, none, {"Pan(1,32)"}, "Pan(1,32)", "Pan(1,32)", "P32 T0 Z0 I0 F0"},
        {34, 0, {}, true, menu, {"MenuNavigate(1,0,1,0)"}, "MenuNavigate(1,0,1,0)", "", "P0 T0 Z0 I0 F0 menu"},
        {39, 10.0, {}, true, none, {}, "", "", "P0 T0 Z0 I0 F0"},
        {46, 10.0, {}, true, none, {}, "", "", "P0 T0 Z0 I0 F0"},
        {52, 0, {}, true, none, {"Tilt(1,-32)"}, "Tilt(1,-32)", "Tilt(1,-32)", "P0 T-32 Z0 I0 F0"},
        {52, 0, {}, true, menu, {"MenuNavigate(1,-1,0,0)"}, "MenuNavigate(1,-1,0,0)", "", "P0 T0 Z0 I0 F0 menu"},
        {53, 0, {"Tilt"}, true, panOnly, {"Tilt(1,32)", "Move(1,32,32,0)"}, "Move(1,32,32,0)", "Move(1,32,32,0)", "P32 T32 Z0 I0 F0"},
        {53, 0, {}, true, menu, {"MenuNavigate(1,1,0,0)"}, "MenuNavigate(1,1,0,0)", "", "P0 T0 Z0 I0 F0 menu"},
        {54, 0, {}, true, [](PtzCamera& c) { c.tiltMotion = 9; }, {"StopAxes(1,0,9,0,0,0)"}, "StopAxes(1,0,9,0,0,0)", "", "P0 T0 Z0 I0 F0"},
        {58, 4.0, {}, true, none, {"Preset(1,4,0)"}, "Preset(1,4,0)", "", "P0 T0 Z0 I0 F0"},
        {59, 4.0, {}, true, none, {"Preset(1,4,2)"}, "Preset(1,4,2)", "", "P0 T0 Z0 I0 F0"},
        {60, 5.7, {}, true, none, {"Preset(1,5,1)"}, "Preset(1,5,1)", "", "P0 T0 Z0 I0 F0"},
        {60, -2.5, {}, true, none, {"Preset(1,-2,1)"}, "Preset(1,-2,1)", "", "P0 T0 Z0 I0 F0"},
        {62, 0, noStops, true, [](PtzCamera& c) { c.irisMotion = -1; }, {"StopAxes(1,0,0,0,-1,0)", "Iris(1,0)"}, "", "", "P0 T0 Z0 I0 F0"},
        {62, 0, {"StopAxes"}, true, [](PtzCamera& c) { c.irisMotion = -1; }, {"StopAxes(1,0,0,0,-1,0)", "Iris(1,0)"}, "Iris(1,0)", "", "P0 T0 Z0 I0 F0"},
        {62, 0, {"StopAxes"}, true, none, {"StopAxes(1,0,0,0,0,0)"}, "", "", "P0 T0 Z0 I0 F0"},
        {63, 0, {"StopAxes"}, true, [](PtzCamera& c) { c.focusMotion = 1; }, {"StopAxes(1,0,0,0,0,1)", "Focus(1,0)"}, "Focus(1,0)", "", "P0 T0 Z0 I0 F0"},
        {63, 0, {}, true, [](PtzCamera& c) { c.focusMotion = -1; }, {"StopAxes(1,0,0,0,0,-1)"}, "StopAxes(1,0,0,0,0,-1)", "", "P0 T0 Z0 I0 F0"},
        {64, 589824.0, {}, true, none, {"RawCommand(1,589824)"}, "RawCommand(1,589824)", "", "P0 T0 Z0 I0 F0"},
        {66, 0, {}, true, menu, {"Menu(1,0)"}, "Menu(1,0)", "", "P0 T0 Z0 I0 F0"},
        {67, 9.0, {}, true, none, {"Flip(1,0)"}, "Flip(1,0)", "", "P0 T0 Z0 I0 F0"},
        {68, 9.0, {}, true, none, {"ApplePeel(1,0)"}, "ApplePeel(1,0)", "", "P0 T0 Z0 I0 F0"},
        {69, 2.0, {}, true, none, {"Pattern(1,2,3)"}, "Pattern(1,2,3)", "", "P0 T0 Z0 I0 F0"},
        {70, 2.0, {}, true, none, {"Pattern(1,2,0)"}, "Pattern(1,2,0)", "", "P0 T0 Z0 I0 F0"},
        {71, 2.0, {}, true, none, {"Pattern(1,2,1)"}, "Pattern(1,2,1)", "", "P0 T0 Z0 I0 F0"},
        {72, 2.0, {}, true, none, {"Pattern(1,2,2)"}, "Pattern(1,2,2)", "", "P0 T0 Z0 I0 F0"},
        {73, 3.9, {}, true, none, {"MenuEnter(1,3)"}, "MenuEnter(1,3)", "", "P0 T0 Z0 I0 F0"},
    };
    for (const Row& row : rows) {
        vorna_test::FakeClock clock;
        vorna_test::RecordingHost host;
        FakeProtocol protocol;
        protocol.unsupported = row.unsupported;
        protocol.repeat = row.repeat;
        PtzCamera camera;
        camera.protocol = &protocol;
        camera.stream = 7;
        camera.repeatBytes = "old";
        row.setup(camera);
        ExecuteCommand(camera, row.opcode, row.parm);
        const std::string what = "opcode " + std::to_string(row.opcode) + " parm " + std::to_string(row.parm);
        EXPECT_EQ(protocol.calls, row.calls) << what;
        EXPECT_EQ(host.SerialPayloads(), row.sent.empty() ? std::vector<std::string>{} : std::vector<std::string>{row.sent}) << what;
        EXPECT_EQ(camera.repeatBytes, row.kept) << what;
        EXPECT_EQ(Motions(camera), row.motions) << what;
        EXPECT_EQ(camera.lastCommandTime, clock.now) << what;
    }
}
