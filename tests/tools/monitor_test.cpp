// The bus monitor: identification from traffic at the wrong and the right
// baud rate, and vorna-host monitor watching a line.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <termios.h>

#include "monitor_identify.h"
#include "monitor_print.h"
#include "support/frames_file.h"
#include "support/reframe.h"
#include "support/temp_dir.h"
#include "tools/host_process.h"
#include "tools/pseudo_terminal.h"

using namespace vorna_host;
using namespace vorna_test;
using testing::HasSubstr;

namespace {

const int kTriedBauds[] = {1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200};

// Every golden frame of a family, repeated to one second of traffic.
std::string OneSecondOf(const std::string& framesFile, int baud) {
    std::string frames;
    for (const FramesRow& row : ReadFramesFile(std::string(VORNA_FRAMES_DIR) + "/" + framesFile)) {
        if (row.operation != "PassThrough") frames += row.expected;
    }
    std::string traffic;
    while (traffic.size() < static_cast<size_t>(baud / 10)) traffic += frames;
    return traffic;
}

}  // namespace

// Sent at one rate and read at every rate the monitor tries, the traffic is
// made of valid frames only at the rate it was sent at, for its family only.
TEST(Monitor, IdentifiesFamilyAndBaudFromReframedTraffic) {
    const struct {
        const char* file;
        const char* family;
        int baud;
    } rows[] = {
        {"pelco_d.frames", "Pelco-D", 2400},     {"pelco_p.frames", "Pelco-P", 4800},
        {"panasonic.frames", "Panasonic", 9600}, {"sensormatic.frames", "AD-RS422", 4800},
        {"bosch.frames", "Bosch", 19200},        {"ge_ascii.frames", "GE-ASCII", 9600},
        {"ge_impac.frames", "GE-Impac", 38400},  {"ad_megapower.frames", "AD-M3200", 1200},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.file);
        const std::string traffic = OneSecondOf(row.file, row.baud);
        std::vector<LineSample> samples;
        for (int baud : kTriedBauds) samples.push_back(LineSample{baud, Reframe(traffic, row.baud, baud)});
        EXPECT_EQ(samples[0].bytes.size() == traffic.size(), row.baud == 1200) << "a wrong rate garbles the bytes";
        const std::vector<FamilyScore> scores = ScoreSamples(samples, ProtocolFamilies());
        EXPECT_EQ(scores.front().protocol, row.family) << DescribeIdentification(scores);
        EXPECT_EQ(scores.front().baud, row.baud) << DescribeIdentification(scores);
        EXPECT_GT(scores.front().Share(), kIdentifiedShare);
    }
}

// A pseudo-terminal carries bytes at any rate: the monitor names the family
// and the addresses, and writes nothing to the line.
TEST(Monitor, NamesProtocolAndAddressesOnAWatchedLine) {
    // Address 1 pans right and stops, address 2 goes to preset 5.
    const std::string frames("\xFF\x01\x00\x02\x1F\x00\x22\xFF\x01\x00\x00\x00\x00\x01"
                             "\xFF\x02\x00\x07\x00\x05\x0E", 21);
    PseudoTerminal watched;
    // No echo from the terminal itself: whatever comes back was written.
    termios raw;
    tcgetattr(watched.slave, &raw);
    cfmakeraw(&raw);
    tcsetattr(watched.slave, TCSANOW, &raw);
    TempDir dir;
    HostProcess monitor({"monitor", watched.slavePath}, dir.path);
    const auto sawPreset = [&] { return monitor.out.find("address 2  go to preset 5") != std::string::npos; };
    for (int round = 0; round < 400 && !sawPreset(); ++round) {
        ASSERT_EQ(static_cast<ssize_t>(frames.size()), write(watched.master, frames.data(), frames.size()));
        monitor.WaitUntil(sawPreset, 20);
    }
    monitor.Signal(SIGINT);
    ASSERT_EQ(0, monitor.Finish()) << monitor.err;
    EXPECT_THAT(monitor.out, HasSubstr("identified Pelco-D (or HSD-Pelco-D) at "));
    EXPECT_THAT(monitor.out, HasSubstr("FF 01 00 02 1F 00 22  Pelco-D  address 1  pan right 32"));
    const std::string table = monitor.out.substr(monitor.out.rfind("addresses seen:"));
    EXPECT_THAT(table, HasSubstr("\n  address 1: "));
    EXPECT_THAT(table, HasSubstr("\n  address 2: "));
    EXPECT_EQ("", watched.Rest()) << "the monitor wrote to the line";
}
