#include "core/camera_tick.h"

#include <gtest/gtest.h>

#include <functional>

#include "support/fake_protocol.h"

using namespace vorna;
using vorna_test::FakeProtocol;

constexpr int64_t kNow = 1000000;

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
