#include <gtest/gtest.h>

#include "message_router.h"
#include "options.h"
#include "printed_line.h"

using namespace vorna_host;

namespace {

TEST(HostOptions, LineOptionsNameProtocolDeviceAndBaud) {
    const struct {
        const char* text;
        const char* name;
        const char* protocol;
        const char* device;
        int baud;
    } rows[] = {
        {"COM1=Pelco-D", "COM1", "Pelco-D", "", 2400},
        {"COM4=Panasonic:2400", "COM4", "Panasonic", "", 2400},
        {"COM2=AD-M3200 Multi@/dev/ttyUSB0:2400", "COM2", "AD-M3200 Multi", "/dev/ttyUSB0", 2400},
        {"COM3=Bosch@/dev/serial/by-path/pci-0000:00:14.0-usb-0:2:1.0-port0", "COM3", "Bosch",
         "/dev/serial/by-path/pci-0000:00:14.0-usb-0:2:1.0-port0", 9600},
        {"COM5=AD-MP48", "COM5", "AD-MP48", "", 1200},
    };
    for (const auto& row : rows) {
        LineOption line;
        std::string error;
        ASSERT_TRUE(ParseLineOption(row.text, line, error)) << row.text << ": " << error;
        EXPECT_EQ(row.name, line.name);
        EXPECT_EQ(row.protocol, line.protocol);
        EXPECT_EQ(row.device, line.device);
        EXPECT_EQ(row.baud, line.baud);
    }
}

TEST(HostOptions, OptionsTakeSeparateOrInlineValues) {
    HostOptions options;
    std::string error;
    const std::vector<std::string> args = {"--module=lib.so", "--workdir", "site",
                                           "--line",          "COM1=Pelco-D", "--line=COM2=Bosch@/dev/ttyS1"};
    ASSERT_TRUE(ParseOptions(args, options, error)) << error;
    EXPECT_EQ("lib.so", options.modulePath);
    EXPECT_EQ("site", options.workDir);
    ASSERT_EQ(2u, options.lines.size());
    EXPECT_EQ("/dev/ttyS1", options.lines[1].device);
}

TEST(HostOptions, HttpTakesAnOptionalAddressAndAPort) {
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
}

TEST(HostOptions, BadOptionsSayWhy) {
    const struct {
        std::vector<std::string> args;
        const char* error;
    } rows[] = {
        {{"--line", "COM1"}, "--line 'COM1': expected NAME=PROTOCOL[@DEVICE][:BAUD]"},
        {{"--line", "=Pelco-D"}, "--line '=Pelco-D': expected NAME=PROTOCOL[@DEVICE][:BAUD]"},
        {{"--line", "COM1=pelco-d"}, "--line 'COM1=pelco-d': unknown protocol 'pelco-d' (known: Pelco-D, HSD-Pelco-D, "
                                     "Pelco-P, Panasonic, AD-RS422, Bosch, GE-ASCII, GE-Impac, AD-M3200, "
                                     "AD-M3200 Multi, AD-MP48, AD-MP48 Multi)"},
        {{"--line", "COM1=Pelco-D@"}, "--line 'COM1=Pelco-D@': no device after '@'"},
        {{"--line", "COM1=Pelco-D:300"}, "--line 'COM1=Pelco-D:300': bad baud rate '300' (supported: 1200, 2400, "
                                         "4800, 9600, 19200, 38400, 57600, 115200)"},
        {{"--line", "COM1=Pelco-D@/dev/ttyS0:"}, "--line 'COM1=Pelco-D@/dev/ttyS0:': bad baud rate '' (supported: "
                                                 "1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200)"},
        {{"--line", "COM1=Bosch", "--line", "COM1=Pelco-D"}, "--line 'COM1=Pelco-D': line COM1 is given twice"},
        {{"--script"}, "option --script needs a value"},
        {{"--http", ""}, "--http '': expected [ADDRESS:]PORT"},
        {{"--http", "http"}, "--http 'http': expected [ADDRESS:]PORT"},
        {{"--http", "0.0.0.0:"}, "--http '0.0.0.0:': expected [ADDRESS:]PORT"},
        {{"--http", ":80"}, "--http ':80': expected [ADDRESS:]PORT"},
        {{"--http", "1.2.3.4:65536"}, "--http '1.2.3.4:65536': expected [ADDRESS:]PORT"},
    };
    for (const auto& row : rows) {
        HostOptions options;
        std::string error;
        EXPECT_FALSE(ParseOptions(row.args, options, error)) << row.error;
        EXPECT_EQ(row.error, error);
    }
}

TEST(HostReports, FramesAndLogsPrintAsOneLineEach) {
    const uint8_t pelco[] = {0xFF, 0x01, 0x00, 0x07, 0x00, 0x05, 0x0D};
    EXPECT_EQ("    250 ms  COM1  FF 01 00 07 00 05 0D\n", FormatFrame(250, "COM1", pelco, sizeof pelco, false));
    EXPECT_EQ("log: something else", DescribeLog("something else"));
}

}  // namespace
