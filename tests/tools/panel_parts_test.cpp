#include <gtest/gtest.h>

#include "motion_watchdog.h"
#include "options.h"
#include "panel_access.h"
#include "vorna/ptz.h"

using namespace vorna_host;

namespace {

TEST(PanelAccess, TokenIsNeededOffLoopbackOrWhenGiven) {
    const struct {
        const char* address;
        const char* given;
        bool needsToken;
    } rows[] = {
        {"127.0.0.1", "", false}, {"localhost", "", false}, {"::1", "", false},
        {"127.0.0.1", "s3cret", true}, {"0.0.0.0", "", true}, {"192.168.1.20", "", true},
    };
    for (const auto& row : rows) {
        const PanelAccess access = PanelAccess::For(row.address, row.given);
        EXPECT_EQ(row.needsToken, !access.Refusal("").empty()) << row.address << " " << row.given;
        if (row.needsToken) {
            EXPECT_EQ("", access.Refusal(access.Token())) << row.address;
        }
    }
    EXPECT_NE(PanelAccess::For("0.0.0.0", "").Token(), PanelAccess::For("0.0.0.0", "").Token());
}

TEST(PanelAccess, OnlyTheWholeTokenMatches) {
    const struct {
        const char* presented;
        bool same;
    } rows[] = {
        {"abcdef", true}, {"xbcdef", false}, {"abcdex", false}, {"abcde", false},
        {"abcdefg", false}, {"ABCDEF", false}, {"", false},
    };
    for (const auto& row : rows) EXPECT_EQ(row.same, SameToken(row.presented, "abcdef")) << row.presented;
    EXPECT_FALSE(SameToken("", ""));
}

TEST(PanelOptions, HttpTakesAnOptionalAddressAndAPort) {
    const struct {
        const char* value;
        const char* address;
        int port;
    } rows[] = {{"8080", "127.0.0.1", 8080}, {"0.0.0.0:8080", "0.0.0.0", 8080}, {"[::1]:0", "::1", 0}};
    for (const auto& row : rows) {
        HostOptions options;
        std::string error;
        ASSERT_TRUE(ParseOptions({"--http", row.value}, options, error)) << error;
        EXPECT_EQ(row.address, options.httpAddress);
        EXPECT_EQ(row.port, options.httpPort);
    }
    for (const char* bad : {"", "http", "0.0.0.0:", ":80", "1.2.3.4:65536"}) {
        HostOptions options;
        std::string error;
        EXPECT_FALSE(ParseOptions({"--http", bad}, options, error)) << bad;
        EXPECT_EQ("--http '" + std::string(bad) + "': expected [ADDRESS:]PORT", error);
    }
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
