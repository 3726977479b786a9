#include <gtest/gtest.h>

#include "motion_watchdog.h"
#include "panel_access.h"
#include "vorna/ptz.h"

using namespace vorna_host;

namespace {

// Off loopback, or when one is given, only the whole token opens the panel;
// a made-up token differs from start to start.
TEST(PanelAccess, OnlyTheWholeTokenOpensAPanelThatNeedsOne) {
    const struct {
        const char* address;
        const char* given;
        const char* presented;
        bool open;
    } rows[] = {
        {"127.0.0.1", "", "", true},          {"localhost", "", "", true},          {"::1", "", "", true},
        {"0.0.0.0", "", "", false},           {"192.168.1.20", "", "", false},      {"::1", "abcdef", "", false},
        {"::1", "abcdef", "abcdef", true},    {"::1", "abcdef", "xbcdef", false},   {"::1", "abcdef", "abcdex", false},
        {"::1", "abcdef", "abcde", false},    {"::1", "abcdef", "abcdefg", false},  {"::1", "abcdef", "ABCDEF", false},
    };
    for (const auto& row : rows) {
        const PanelAccess access = PanelAccess::For(row.address, row.given);
        EXPECT_EQ(row.open, access.Refusal(row.presented).empty()) << row.address << " " << row.presented;
    }
    const PanelAccess madeUp = PanelAccess::For("0.0.0.0", "");
    EXPECT_EQ("", madeUp.Refusal(madeUp.Token()));
    EXPECT_NE(madeUp.Token(), PanelAccess::For("0.0.0.0", "").Token());
}

TEST(MotionWatchdog, StopsACameraLeftMovingWithoutRequestsForASecond) {
    using std::chrono::milliseconds;
    const CameraKey camera{1, 1, 1};
    const MotionWatchdog::Clock::time_point t0;
    const struct {
        const char* what;
        std::vector<OpcodeCall> calls;
        int holdAtMs;  // -1: no hold request
        int checkAtMs;
        bool stopped;
    } rows[] = {
        {"pan, on time", {{VORNA_OP_PAN_LEFT, 0}}, -1, 1000, false},
        {"pan, late", {{VORNA_OP_PAN_LEFT, 0}}, -1, 1001, true},
        {"pan, held", {{VORNA_OP_PAN_LEFT, 0}}, 900, 1800, false},
        {"pan, held then late", {{VORNA_OP_PAN_LEFT, 0}}, 900, 1901, true},
        {"zoom", {{VORNA_OP_ZOOM_IN, 0}}, -1, 1500, true},
        {"focus", {{VORNA_OP_FOCUS_FAR, 0}}, -1, 1500, true},
        {"pan stopped", {{VORNA_OP_PAN_RIGHT, 0}, {VORNA_OP_STOP_PAN, 0}}, -1, 5000, false},
        {"tilt still moving", {{VORNA_OP_PAN_RIGHT, 0}, {VORNA_OP_TILT_UP, 0}, {VORNA_OP_STOP_PAN, 0}}, -1, 5000, true},
        {"preset", {{VORNA_OP_GO_TO_PRESET, 3}}, -1, 5000, false},
    };
    for (const auto& row : rows) {
        MotionWatchdog watchdog;
        watchdog.Request(camera, row.calls, t0);
        if (row.holdAtMs >= 0) watchdog.Request(camera, {}, t0 + milliseconds(row.holdAtMs));
        EXPECT_EQ(row.stopped ? 1u : 0u, watchdog.Overdue(t0 + milliseconds(row.checkAtMs)).size()) << row.what;
        if (row.stopped) {
            EXPECT_TRUE(watchdog.Overdue(t0 + milliseconds(row.checkAtMs + 5000)).empty()) << row.what;
        }
        EXPECT_EQ(1u, watchdog.Commanded().size()) << row.what;
    }
}

}  // namespace
