#include <gtest/gtest.h>

#include <functional>

#include "core/camera_tick.h"
#include "core/command_executor.h"
#include "core/event_intake.h"
#include "support/fake_protocol.h"
#include "support/recording_host.h"
#include "support/step_loop.h"

using namespace vorna;
using vorna_test::FakeClock;
using vorna_test::FakeProtocol;
using vorna_test::TimedChange;

namespace {

const int64_t kNow = 1000000;

}  // namespace

// What the worker waits for a camera in one state: one row per rule.
TEST(TimeUntilDue, OneRowPerRule) {
    struct Row {
        const char* rule;
        std::function<void(PtzCamera&, FakeProtocol&)> state;
        int64_t expected;
    };
    auto tour = [](PtzCamera& c) { c.tourEnabled = true; c.tour = {{1, 11}}; };
    auto alarm = [](PtzCamera& c) { c.commandQueue.push_back(QueuedCommand{1, 60, 4.0, kInvalidTime, 0}); };
    const std::vector<Row> rows = {
        {"no protocol: the longest nap", [](PtzCamera& c, FakeProtocol&) { c.protocol = nullptr; }, 250},
        {"nothing to do: the longest nap", [](PtzCamera&, FakeProtocol&) {}, 250},
        {"first tour step, held by the interval gate", [&](PtzCamera& c, FakeProtocol&) { tour(c); c.lastCommandTime = kNow - 100; }, 150},
        {"clock set back: due now", [&](PtzCamera& c, FakeProtocol&) { tour(c); c.lastCommandTime = kNow + 5000; }, 0},
        {"next tour step after the dwell", [&](PtzCamera& c, FakeProtocol&) { tour(c); c.tourStepTime = kNow - 9900; }, 100},
        {"tour step far off: capped", [&](PtzCamera& c, FakeProtocol&) { tour(c); c.tourStepTime = kNow - 4000; }, 250},
        {"repeat one interval after the last command",
         [](PtzCamera& c, FakeProtocol& p) { p.repeat = true; c.activityTime = kNow - 100; c.lastCommandTime = kNow - 100; }, 150},
        {"repeat on a faster protocol",
         [](PtzCamera& c, FakeProtocol& p) { p.repeat = true; p.interval = 67; c.activityTime = kNow - 10; c.lastCommandTime = kNow - 10; }, 57},
        {"idle return when the operator counts as gone",
         [](PtzCamera& c, FakeProtocol&) { c.tourEnabled = true; c.panMotion = 32; c.activityTime = kNow - 59900; }, 100},
        {"idle return needs tours on",
         [](PtzCamera& c, FakeProtocol&) { c.panMotion = 32; c.activityTime = kNow - 59900; }, 250},
        {"tour waits for the operator",
         [&](PtzCamera& c, FakeProtocol&) { tour(c); c.activityTime = kNow - 59950; }, 50},
        {"alarm entry to send", [&](PtzCamera& c, FakeProtocol&) { alarm(c); }, 0},
        {"alarm entry held by the interval gate", [&](PtzCamera& c, FakeProtocol&) { alarm(c); c.lastCommandTime = kNow - 10; }, 240},
        {"next burst after the dwell",
         [&](PtzCamera& c, FakeProtocol& p) { p.presetRepeatCount = 3; alarm(c); c.commandQueue.back().sendCount = 3; c.tourDwell = 2; c.lastCommandTime = kNow - 1900; }, 100},
        {"entry end passing before the next burst",
         [&](PtzCamera& c, FakeProtocol& p) { p.presetRepeatCount = 3; alarm(c); c.commandQueue.back().sendCount = 3; c.commandQueue.back().endTime = kNow + 30; c.lastCommandTime = kNow - 1000; }, 31},
    };
    for (const Row& row : rows) {
        FakeProtocol protocol;
        PtzCamera camera;
        camera.protocol = &protocol;
        camera.lastCommandTime = kNow - 100000;
        row.state(camera, protocol);
        EXPECT_EQ(TimeUntilDue(camera, kNow), row.expected) << row.rule;
    }
}

namespace {

// A camera on a protocol of its own, with the keys (1, 1, input).
PtzCamera& AddCamera(PtzController& controller, int input, FakeProtocol& protocol) {
    auto camera = std::make_unique<PtzCamera>();
    camera->protocol = &protocol;
    camera->stream = 10 + input;
    camera->devicesId = 1;
    camera->deviceNumber = 1;
    camera->inputNumber = input;
    return controller.cameras.Append(std::move(camera));
}

PtzCamera& Camera(PtzController& controller, int index) { return **std::next(controller.cameras.begin(), index); }

TimedChange Operator(int64_t at, int index, int opcode, double parm = 0.0) {
    return {at, [=](PtzController& c) {
                ExecuteCommand(Camera(c, index), opcode, parm);
                Camera(c, index).activityTime = NowMs();
            }};
}

TimedChange AlarmStart(int64_t at, int index, uint32_t action, double preset) {
    return {at, [=](PtzController& c) { StartAlarmCommand(Camera(c, index), action, VORNA_OP_GO_TO_PRESET, preset); }};
}

TimedChange AlarmEnd(int64_t at, int index, uint32_t action, double preset, int64_t endsAfter) {
    return {at, [=](PtzController& c) {
                EndAlarmCommand(Camera(c, index), action, VORNA_OP_GO_TO_PRESET, NowMs() + endsAfter, preset);
            }};
}

struct Scenario {
    const char* name;
    std::function<void(PtzController&, FakeProtocol&, FakeProtocol&)> setup;
    std::vector<TimedChange> changes;
    int64_t duration;
};

std::vector<std::string> Drive(const Scenario& scenario, bool reference) {
    FakeClock clock;
    vorna_test::RecordingHost host;
    PtzController controller;
    controller.protocols["first"] = std::make_unique<FakeProtocol>();
    controller.protocols["second"] = std::make_unique<FakeProtocol>();
    scenario.setup(controller, static_cast<FakeProtocol&>(*controller.protocols["first"]),
                   static_cast<FakeProtocol&>(*controller.protocols["second"]));
    if (reference)
        StepEveryMillisecond(controller, clock, scenario.changes, scenario.duration);
    else
        vorna_test::RunWorkerPasses(controller, clock, scenario.changes, scenario.duration);
    std::vector<std::string> lines;
    for (const auto& m : host.OfType(VORNA_TYPE_SERIAL))
        lines.push_back(std::to_string(m.time - 1000000) + " " + std::to_string(m.record.stream) + " " + m.payload);
    return lines;
}

}  // namespace

// The sleeping worker sends exactly what a worker that never sleeps sends, at
// the same milliseconds.
TEST(TimeUntilDue, SleepingWorkerMatchesContinuousStepping) {
    auto touring = [](PtzCamera& c) -> PtzCamera& {
        c.tourEnabled = true;
        c.tourIdle = 5;
        c.tour = {{1, 11}, {2, 12}, {5, 15}};
        return c;
    };
    const std::vector<Scenario> scenarios = {
        {"tour of three positions",
         [&](PtzController& c, FakeProtocol& p, FakeProtocol&) { touring(AddCamera(c, 1, p)); }, {}, 45000},
        {"pan, idle return, tour",
         [&](PtzController& c, FakeProtocol& p, FakeProtocol&) { touring(AddCamera(c, 1, p)); },
         {Operator(1000, 0, VORNA_OP_PAN_RIGHT), Operator(1500, 0, VORNA_OP_ZOOM_IN), Operator(9000, 0, VORNA_OP_TILT_UP)}, 40000},
        {"repeating protocol, then a plain command",
         [](PtzController& c, FakeProtocol& p, FakeProtocol&) { p.repeat = true; AddCamera(c, 1, p); },
         {Operator(500, 0, VORNA_OP_PAN_LEFT), Operator(2300, 0, VORNA_OP_GO_TO_PRESET, 3), Operator(4000, 0, VORNA_OP_ZOOM_IN),
          Operator(4100, 0, VORNA_OP_STOP_ZOOM)},
         6000},
        {"repeating protocol with tours on",
         [&](PtzController& c, FakeProtocol& p, FakeProtocol&) { p.repeat = true; p.interval = 67; touring(AddCamera(c, 1, p)); },
         {Operator(700, 0, VORNA_OP_PAN_LEFT), Operator(3000, 0, VORNA_OP_TILT_DOWN)}, 20000},
        {"alarm bursts of three",
         [](PtzController& c, FakeProtocol& p, FakeProtocol&) { p.presetRepeatCount = 3; AddCamera(c, 1, p).tourDwell = 2; },
         {AlarmStart(100, 0, 1, 4), AlarmEnd(7000, 0, 1, 4, 500)}, 12000},
        {"alarm sent on every step",
         [](PtzController& c, FakeProtocol& p, FakeProtocol&) { AddCamera(c, 1, p); },
         {AlarmStart(100, 0, 1, 4), AlarmEnd(3000, 0, 1, 4, 200)}, 5000},
        {"two alarms ending at different times, then the tour",
         [&](PtzController& c, FakeProtocol& p, FakeProtocol&) { p.presetRepeatCount = 1; touring(AddCamera(c, 1, p)).tourDwell = 3; },
         {AlarmStart(0, 0, 1, 4), AlarmStart(300, 0, 2, 8), AlarmEnd(400, 0, 2, 8, 1600), AlarmEnd(500, 0, 1, 4, 4000)},
         15000},
        {"camera re-bound mid-tour",
         [&](PtzController& c, FakeProtocol& p, FakeProtocol& q) { q.interval = 67; q.repeat = true; touring(AddCamera(c, 1, p)); },
         {{15000, [](PtzController& c) { Camera(c, 0).protocol = c.protocols["second"].get(); }},
          Operator(21000, 0, VORNA_OP_PAN_RIGHT)},
         40000},
        {"two cameras on different protocols",
         [&](PtzController& c, FakeProtocol& p, FakeProtocol& q) {
             q.repeat = true;
             q.interval = 67;
             touring(AddCamera(c, 1, p));
             AddCamera(c, 2, q);
         },
         {Operator(800, 1, VORNA_OP_PAN_RIGHT), AlarmStart(2000, 0, 3, 9), AlarmEnd(2600, 0, 3, 9, 0), Operator(5000, 1, VORNA_OP_MENU_ON)},
         30000},
    };
    for (const Scenario& scenario : scenarios) {
        const auto reference = Drive(scenario, true);
        EXPECT_FALSE(reference.empty()) << scenario.name;
        EXPECT_EQ(Drive(scenario, false), reference) << scenario.name;
    }
}
