#include "core/camera_tick.h"

#include <gtest/gtest.h>

#include "core/command_executor.h"
#include "core/event_intake.h"
#include "support/fake_protocol.h"
#include "support/recording_host.h"
#include "support/step_loop.h"

using namespace vorna;
using vorna_test::FakeClock;
using vorna_test::FakeProtocol;
using vorna_test::StepEveryMillisecond;
using Lines = std::vector<std::string>;

namespace {

struct Fixture {
    Fixture() {
        camera.protocol = &protocol;
        camera.stream = 3;
    }
    // An operator command, as event intake gives it.
    void Operator(int opcode) {
        ExecuteCommand(camera, opcode, 0.0);
        camera.activityTime = clock.now;
    }
    void Run(int64_t forMilliseconds) { StepEveryMillisecond(camera, clock, start + forMilliseconds); }
    Lines Sent() const { return host.TimedSerial(start); }

    FakeClock clock;
    const int64_t start = clock.now;
    vorna_test::RecordingHost host;
    FakeProtocol protocol;
    PtzCamera camera;
};

}  // namespace

TEST(CameraTick, TourVisitsThePositionsInOrderAtDwellIntervals) {
    Fixture f;
    f.camera.tourEnabled = true;
    f.camera.tour = {{1, 11}, {2, 12}, {5, 15}};
    f.Run(35000);
    EXPECT_EQ(f.Sent(), (Lines{"0 Preset(1,11,1)", "10000 Preset(1,12,1)", "20000 Preset(1,15,1)",
                               "30000 Preset(1,11,1)"}));
}

TEST(CameraTick, ADeletedPositionRestartsTheTourAtTheSmallest) {
    Fixture f;
    f.camera.tourEnabled = true;
    f.camera.tour = {{1, 11}, {2, 12}, {5, 15}};
    f.Run(10000);
    f.camera.tour.erase(2);
    f.Run(20000);
    EXPECT_EQ(f.Sent(), (Lines{"0 Preset(1,11,1)", "10000 Preset(1,12,1)", "20000 Preset(1,11,1)"}));
}

TEST(CameraTick, OperatorActivityHoldsTheTourThenMotionsStop) {
    Fixture f;
    f.camera.tourEnabled = true;
    f.camera.tour = {{1, 11}};
    f.Operator(VORNA_OP_PAN_RIGHT);
    f.Operator(VORNA_OP_ZOOM_IN);
    f.Run(61000);
    EXPECT_EQ(f.Sent(), (Lines{"0 Pan(1,32)", "0 Zoom(1,2)", "60000 StopAxes(1,32,0,0,0,0)",
                               "60000 StopAxes(1,0,0,2,0,0)", "60000 Preset(1,11,1)"}));
}

TEST(CameraTick, RepeatingProtocolResendsKeptBytesWhileToursAreOff) {
    Fixture f;
    f.protocol.repeat = true;
    f.Operator(VORNA_OP_PAN_LEFT);
    f.Run(800);
    f.Operator(VORNA_OP_GO_TO_PRESET);  // plain: nothing kept any more
    f.Run(1500);
    EXPECT_EQ(f.Sent(), (Lines{"0 Pan(1,-32)", "250 Pan(1,-32)", "500 Pan(1,-32)", "750 Pan(1,-32)",
                               "801 Preset(1,0,1)"}));
}

TEST(CameraTick, AlarmEntryEndingNowIsSentThisStepAndDroppedTheNext) {
    Fixture f;
    StartAlarmCommand(f.camera, 1, VORNA_OP_GO_TO_PRESET, 4.0);
    EndAlarmCommand(f.camera, 1, VORNA_OP_GO_TO_PRESET, f.start + 250, 4.0);
    f.Run(600);
    EXPECT_EQ(f.Sent(), (Lines{"0 Preset(1,4,1)", "250 Preset(1,4,1)"}));
    EXPECT_TRUE(f.camera.commandQueue.empty());
}

TEST(CameraTick, OnlyTheNewestAlarmIsSentUntilItEnds) {
    Fixture f;
    StartAlarmCommand(f.camera, 1, VORNA_OP_GO_TO_PRESET, 4.0);
    StartAlarmCommand(f.camera, 2, VORNA_OP_GO_TO_PRESET, 8.0);
    f.Run(300);
    EndAlarmCommand(f.camera, 2, VORNA_OP_GO_TO_PRESET, f.clock.now, 8.0);
    f.Run(800);
    EXPECT_EQ(f.Sent(), (Lines{"0 Preset(1,8,1)", "250 Preset(1,8,1)", "500 Preset(1,4,1)", "750 Preset(1,4,1)"}));
}

TEST(CameraTick, CountedAlarmsGoOutInBurstsDwellApart) {
    Fixture f;
    f.protocol.presetRepeatCount = 3;
    f.camera.tourDwell = 2;
    StartAlarmCommand(f.camera, 1, VORNA_OP_GO_TO_PRESET, 4.0);
    f.Run(5000);
    // Three sends; the step at which the dwell has passed since the last send
    // only resets the count, and the next step starts the new burst.
    EXPECT_EQ(f.Sent(), (Lines{"0 Preset(1,4,1)", "250 Preset(1,4,1)", "500 Preset(1,4,1)", "2501 Preset(1,4,1)",
                               "2751 Preset(1,4,1)", "3001 Preset(1,4,1)"}));
}

TEST(CameraTick, QueuedAlarmsHoldTheTour) {
    Fixture f;
    f.camera.tourEnabled = true;
    f.camera.tour = {{1, 11}};
    f.protocol.presetRepeatCount = 1;
    StartAlarmCommand(f.camera, 1, VORNA_OP_GO_TO_PRESET, 4.0);
    f.Run(20000);
    EXPECT_EQ(f.Sent(), (Lines{"0 Preset(1,4,1)", "10001 Preset(1,4,1)"}));
}

TEST(CameraTick, CameraWithoutProtocolKeepsItsQueueAndDoesNotSpin) {
    Fixture f;
    f.camera.protocol = nullptr;
    StartAlarmCommand(f.camera, 1, VORNA_OP_GO_TO_PRESET, 4.0);
    EndAlarmCommand(f.camera, 1, VORNA_OP_GO_TO_PRESET, f.start - 5000, 4.0);
    EXPECT_EQ(TimeUntilDue(f.camera, f.clock.now), kMaxWorkerWait);
    CameraTick(f.camera, f.clock.now);
    EXPECT_EQ(f.camera.commandQueue.size(), 1u);
    EXPECT_TRUE(f.host.sent.empty());
}
