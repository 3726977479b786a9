#include "host/host_sender.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/recording_host.h"

using namespace vorna;

TEST(LogToHost, LevelZeroSendsNothing) {
    vorna_test::RecordingHost host;
    LogToHost(0, "ptz camera serial port 3 not found");
    EXPECT_TRUE(host.sent.empty());
}

TEST(LogToHost, SendsTheLogLineAsATypedRecord) {
    struct Case {
        int level;
        std::string message;
        std::string text;
    };
    const std::vector<Case> cases = {
        {50, "ptz camera serial port 3 not found",
         "<log_msg level=\"50\">ptz camera serial port 3 not found</log_msg>"},
        {75, "a <b> & \"c\"", "<log_msg level=\"75\">a <b> & \"c\"</log_msg>"},
        {-3, "", "<log_msg level=\"-3\"></log_msg>"},
    };
    for (const Case& c : cases) {
        vorna_test::RecordingHost host;
        LogToHost(c.level, c.message);
        ASSERT_EQ(host.sent.size(), 1u);
        const auto& sent = host.sent.front();
        EXPECT_EQ(sent.payload, c.text);
        EXPECT_EQ(sent.record.length, c.text.size());
        EXPECT_EQ(sent.record.size, 224u);
        EXPECT_EQ(sent.record.version, 1u);
        EXPECT_EQ(sent.record.stream, 0x100000u);
        EXPECT_EQ(sent.record.type, 0x40u);
        EXPECT_EQ(sent.record.flags, 0x1000010u);
    }
}

