#include "host/host_sender.h"

#include <gtest/gtest.h>

#include "support/recording_host.h"

// Every other level reaches the host as a log record; the replay scripts read
// those records back, header and text.
TEST(LogToHost, LevelZeroSendsNothing) {
    vorna_test::RecordingHost host;
    vorna::LogToHost(0, "ptz camera serial port 3 not found");
    EXPECT_TRUE(host.sent.empty());
}
