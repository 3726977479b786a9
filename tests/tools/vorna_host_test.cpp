// vorna-host as a user runs it: real pseudo-terminal lines, virtual lines,
// the demo script, bad input, the ways of ending and a console on a terminal.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <termios.h>

#include <filesystem>
#include <functional>
#include <memory>

#include "support/temp_dir.h"
#include "tools/host_process.h"
#include "tools/pseudo_terminal.h"

using namespace vorna_test;
using testing::HasSubstr;

namespace {

// One Pelco-D camera on COM1, address 1, no tour.
const char* const kOneCamera =
    "<Tarn Delta=\"1\"><PTZ ID=\"1048576\"><Devices ID=\"1\"><Device Number=\"1\">"
    "<Input Number=\"1\" SerialPort=\"COM1\" Address=\"1\" /></Device></Devices></PTZ></Tarn>";

const std::string kExamples = VORNA_EXAMPLES_DIR;
const char* const kPanRight = "FF 01 00 02 1F 00 22";

// The stops of every axis of a Pelco-D camera are one frame each; once one
// is waiting for the wire the next ones replace it, so one or two go out.
bool StopsOfAddressOne(const std::string& hex) {
    const std::string stop = "FF 01 00 00 00 00 01";
    return hex == stop || hex == stop + " " + stop;
}

size_t Count(const std::string& text, const std::string& part) {
    size_t count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
}

// The time column of the first printed line that holds `part`.
long TimeOfLineWith(const std::string& out, const std::string& part) {
    const size_t at = out.find(part);
    if (at == std::string::npos) return -1;
    return std::stol(out.substr(out.rfind('\n', at) + 1));
}

// A real line runs raw at the asked rate, is announced, echoed on request and
// held exclusively: a second host gets a clear error. An adapter unplugged
// mid-session is reported once; when it is back under its name, the host
// opens it again and goes on sending.
TEST(VornaHost, RealLineIsRawHeldExclusivelyAndReopenedWhenItReturns) {
    TempDir dir;
    dir.Write("VORNA.xml", kOneCamera);
    const std::string device = dir.File("ttyCOM1");
    auto line = std::make_unique<PseudoTerminal>();
    ASSERT_EQ(0, symlink(line->slavePath.c_str(), device.c_str()));
    HostProcess host({"--echo", "--line", "COM1=Pelco-D@" + device + ":4800"}, dir.path);
    host.Type("camera 1 1 1\nright\n");
    ASSERT_EQ(kPanRight, line->HexUntil(kPanRight));
    termios settings;
    ASSERT_EQ(0, tcgetattr(line->slave, &settings));
    EXPECT_EQ(B4800, cfgetospeed(&settings));
    EXPECT_EQ(B4800, cfgetispeed(&settings));
    EXPECT_EQ(CS8, settings.c_cflag & (CSIZE | PARENB | CSTOPB));
    EXPECT_EQ(0u, settings.c_lflag & (ICANON | ECHO | ISIG));
    EXPECT_EQ(0u, settings.c_oflag & OPOST);

    TempDir other;
    HostProcess second({"--line", "COM1=Pelco-D@" + device}, other.path);
    EXPECT_EQ(1, second.Finish());
    EXPECT_EQ("vorna-host: --line COM1: " + device + " is in use by another program; a line must have one writer\n",
              second.err);

    line.reset();
    unlink(device.c_str());
    host.Type("left\n");
    ASSERT_TRUE(host.WaitUntil([&] { return Count(host.err, " is gone ") == 1; })) << host.err;
    host.Type("up\n");
    PseudoTerminal back;
    ASSERT_EQ(0, symlink(back.slavePath.c_str(), device.c_str()));
    host.Type("preset goto 5\n");
    EXPECT_THAT(back.HexUntil("FF 01 00 07 00 05 0D"), HasSubstr("FF 01 00 07 00 05 0D"));
    ASSERT_EQ(0, tcgetattr(back.slave, &settings));
    EXPECT_EQ(B4800, cfgetospeed(&settings));
    host.Type("quit\n");
    EXPECT_EQ(0, host.Finish()) << host.err;
    EXPECT_THAT(host.err, HasSubstr("vorna-host: line COM1: " + device + ", Pelco-D, 4800 baud\n"));
    EXPECT_THAT(host.out,
                HasSubstr(" ms  COM1  FF 01 00 02 1F 00 22  = address 1: pan right 32, tilt still, zoom still\n"));
    EXPECT_EQ(1u, Count(host.err, " is gone ")) << host.err;
    EXPECT_EQ(1u, Count(host.err, "vorna-host: line COM1: " + device + " is back\n")) << host.err;
}

// However the host ends, every camera it moved gets its stops before Close.
TEST(VornaHost, StopsWhatItMovedOnEveryWayOfEnding) {
    const std::vector<std::pair<const char*, std::function<void(HostProcess&)>>> endings = {
        {"quit", [](HostProcess& host) { host.Type("quit\n"); }},
        {"end of input", [](HostProcess& host) { host.CloseInput(); }},
        {"SIGINT", [](HostProcess& host) { host.Signal(SIGINT); }},
        {"SIGTERM", [](HostProcess& host) { host.Signal(SIGTERM); }},
    };
    for (const auto& [name, end] : endings) {
        TempDir dir;
        dir.Write("VORNA.xml", kOneCamera);
        PseudoTerminal line;
        HostProcess host({"--line", "COM1=Pelco-D@" + line.slavePath}, dir.path);
        host.Type("camera 1 1 1\nright\n");
        ASSERT_EQ(kPanRight, line.HexUntil(kPanRight)) << name;
        end(host);
        EXPECT_EQ(0, host.Finish()) << name << host.err;
        EXPECT_TRUE(StopsOfAddressOne(Hex(line.Rest()))) << name;
        EXPECT_THAT(host.err,
                    HasSubstr("vorna-host: stopping pan, tilt, zoom, iris and focus of 1 camera before closing\n"))
            << name;
    }
}

// The demo runs to its end; each frame on a virtual line is shown, with its
// meaning, when it would have left the wire.
TEST(VornaHost, DemoScriptDrivesBothCamerasOnVirtualLines) {
    TempDir dir;
    std::filesystem::copy_file(kExamples + "/VORNA.xml", dir.File("VORNA.xml"));
    HostProcess host(
        {"--line", "COM1=Pelco-D", "--line", "COM2=Panasonic:2400", "--script", kExamples + "/demo.script"}, dir.path);
    ASSERT_EQ(0, host.Finish()) << host.err;

    EXPECT_THAT(host.err, HasSubstr("vorna-host: module VORNA 26.1.7.3\n"));
    EXPECT_THAT(host.err, HasSubstr("vorna-host: configuration: 2 cameras, 12 protocols\n"));
    EXPECT_THAT(host.out, HasSubstr("COM1  FF 01 00 07 00 03 0B  = address 1: go to preset 3"));
    const char* const panLeft = "COM2  02 41 44 30 31 3B 47 43 37 3A 39 30 32 38 38 37 30 03  |.AD01;GC7:9028870.|";
    EXPECT_THAT(host.out, HasSubstr(panLeft));
    EXPECT_EQ(Count(host.out, " ms  COM"), Count(host.out, "  = address 1: ")) << "every frame says what it does";
    // 18 bytes at 2400 baud take 75 ms.
    EXPECT_GE(TimeOfLineWith(host.out, panLeft) - TimeOfLineWith(host.out, "> left"), 75) << host.out;
}

// Each command line is checked, against the selected camera's protocol too,
// before anything goes out; a line that sends nothing says why, by its
// number, and the host goes on.
TEST(VornaHost, ChecksEachCommandLineAndGoesOn) {
    const std::string table =
        "<Tarn Delta=\"1\"><PTZ ID=\"1048576\"><Devices ID=\"1\"><Device Number=\"1\">"
        "<Input Number=\"1\" SerialPort=\"COM1\" Address=\"1\" /><Input Number=\"2\" SerialPort=\"COM2\" Address=\"1\" />"
        "<Input Number=\"3\" SerialPort=\"COM3\" Address=\"1\" /><Input Number=\"4\" SerialPort=\"COM1\" Address=\"300\" />"
        "<Input Number=\"5\" SerialPort=\"COM9\" Address=\"1\" /></Device></Devices></PTZ></Tarn>";
    // A command line and what the host says about it (empty: it goes out).
    const std::vector<std::pair<const char*, const char*>> rows = {
        {"list", ""},
        {"left", "no camera selected (use 'camera DEVICES DEVICE INPUT' first)"},
        {"jump", "unknown command 'jump' (try 'help')"},
        {"config missing.xml", "cannot read missing.xml: No such file or directory"},
        {"camera 1 1 1", ""},
        {"speed pan -5", "speed pan must be 0 to 63 on Pelco-D; nothing sent"},
        {"preset goto 33", "preset numbers on Pelco-D are 1 to 32; nothing sent"},
        {"op 74", "opcodes are 0 to 73; nothing sent"},
        {"camera 1 1 2", ""},
        {"speed zoom 4", "speed zoom must be 0 to 3 on Panasonic; nothing sent"},
        {"preset clear 1", "nothing sent: Panasonic has no frame for this command"},
        {"camera 1 1 3", ""},
        {"preset clear 3",
         "AD-RS422 cannot clear a preset: 'preset clear 3' stores the current position as preset 3; not sent (--yes "
         "lets a script send it)"},
        {"camera 1 1 4", "camera 1 1 4: address 300 is outside Pelco-D's addresses 0 to 255"},
        {"camera 9 9 9", "no camera 9 9 9 in the camera table (see 'list')"},
        {"camera 1 1 5", ""},
        {"left", "nothing sent: camera 1 1 5 is on port COM9, which no --line binds to a protocol"},
        {"camera 1 1 1", ""},
        {"speed pan 63", ""},
        {"right", ""},
        {"speed zoom 2", ""},
        {"zoom in", ""},
        {"status", ""},
    };
    std::string script;
    std::string expected;
    for (size_t i = 0; i < rows.size(); ++i) {
        script += rows[i].first + std::string("\n");
        if (*rows[i].second) expected += "vorna-host: line " + std::to_string(i + 1) + ": " + rows[i].second + "\n";
    }
    TempDir dir;
    dir.Write("VORNA.xml", table);
    HostProcess host({"--line", "COM1=Pelco-D", "--line", "COM2=Panasonic", "--line", "COM3=AD-RS422"}, dir.path);
    host.Type(script);
    ASSERT_EQ(0, host.Finish()) << host.err;
    std::string complaints;
    for (size_t at = host.err.find("vorna-host: line "); at != std::string::npos;
         at = host.err.find("vorna-host: line ", at + 1))
        complaints += host.err.substr(at, host.err.find('\n', at) + 1 - at);
    EXPECT_EQ(expected, complaints);
    for (const char* printed : {"1 1 1  port COM1  Pelco-D  address 1  tour off\n",
                                "COM1  FF 01 00 02 3F 00 42  = address 1: pan right 64, tilt still, zoom still\n",
                                "camera 1 1 1: pan right at speed 63, tilt still, zoom in at speed 2, iris still, "
                                "focus still\n",
                                "0 replaced, "})
        EXPECT_THAT(host.out, HasSubstr(printed));

    TempDir confirmed;
    confirmed.Write("VORNA.xml", table);
    HostProcess yes({"--yes", "--raw", "--line", "COM3=AD-RS422"}, confirmed.path);
    yes.Type("camera 1 1 3\npreset clear 3\n");
    ASSERT_EQ(0, yes.Finish()) << yes.err;
    EXPECT_THAT(yes.out, HasSubstr("COM3  01 C7 01 02 35\n")) << yes.err;
}

// Runs that end before the module opens: a bad start, a table that does
// not load, and --check, which reports every problem of the table on a line
// of its own. Each leaves the directory as it was.
TEST(VornaHost, RunsThatEndBeforeTheModuleOpens) {
    const std::string faulty =
        "<Tarn Delta=\"1\"><PTZ ID=\"1048576\"><Devices ID=\"1\"><Device Number=\"1\">"
        "<Input Number=\"1\" SerialPort=\"COM1\" Address=\"300\"><Preset Number=\"40\" Name=\"Far\"/>"
        "<Preset Number=\"7\"><Tour Position=\"3\"/></Preset></Input>"
        "<Input Number=\"2\" SerialPort=\"COM3\" Address=\"1\" /></Device></Devices></PTZ></Tarn>";
    const std::vector<std::string> check = {"--check", "--line", "COM1=Pelco-D"};
    const struct {
        std::vector<std::string> args;
        std::string table;  // VORNA.xml before the run; empty: none
        int status;
        const char* out;  // all of standard output
        const char* err;  // the start of standard error
    } rows[] = {
        {{"--baud", "9600"}, "", 2, "", "vorna-host: unknown argument '--baud' (try --help)"},
        {{"--line", "COM1=Pelco-D@/nonexistent/ttyS9"}, "", 1, "",
         "vorna-host: --line COM1: cannot open /nonexistent/ttyS9: No such file or directory"},
        {{"--line", "COM1=Pelco-D@/dev/null"}, "", 1, "",
         "vorna-host: --line COM1: cannot set up /dev/null as a serial line"},
        {{"--module", "/nonexistent/libvorna.so"}, "", 1, "",
         "vorna-host: cannot load module /nonexistent/libvorna.so"},
        {{"--script", "missing.script"}, "", 1, "", "vorna-host: cannot open script"},
        {{"--workdir", "/nonexistent"}, "", 1, "", "vorna-host: cannot enter working directory /nonexistent"},
        {{"monitor"}, "", 2, "", "vorna-host: monitor: no device"},
        {{"monitor", "/dev/ttyS0:1234"}, "", 2, "",
         "vorna-host: monitor: bad baud rate '1234' (supported: 1200, 2400,"},
        {{"monitor", "/dev/ttyS0", "--protocol", "Pelco-X"}, "", 2, "",
         "vorna-host: monitor: unknown protocol 'Pelco-X' (known: Pelco-D,"},
        {{"monitor", "/nonexistent/ttyS9"}, "", 1, "",
         "vorna-host: cannot open /nonexistent/ttyS9: No such file or directory"},
        {{}, "<Tarn Delta=\"1\"><PTZ ID=\"1048576\"", 1, "", "vorna-host: VORNA.xml does not load: "},
        {check, kOneCamera, 0, "VORNA.xml: no problems\n", ""},
        {check, faulty, 1,
         "camera 1 1 1: tour position 3 names preset 7, which has no name\n"
         "camera 1 1 1: address 300 is outside Pelco-D's addresses 0 to 255\n"
         "camera 1 1 1: preset 40 \"Far\" is beyond Pelco-D's 32 presets\n"
         "camera 1 1 2: port COM3 is not among the lines (--line COM3=PROTOCOL)\n",
         ""},
        {check, "<Tarn>\n<PTZ ID=\"1048576\">\n<Devices ID=\"1\"\n</Tarn>", 1,
         "VORNA.xml: Error reading Attributes. (row 4, column 1)\n", ""},
    };
    for (const auto& row : rows) {
        TempDir dir;
        if (!row.table.empty()) dir.Write("VORNA.xml", row.table);
        HostProcess host(row.args, dir.path);
        EXPECT_EQ(row.status, host.Finish()) << row.err << row.out;
        EXPECT_EQ(row.out, host.out);
        EXPECT_EQ(0u, host.err.find(row.err)) << host.err;
        EXPECT_EQ(row.table.empty() ? "(missing)" : row.table, dir.Read("VORNA.xml"));
        EXPECT_FALSE(dir.Exists("VORNA.xml.bad") || dir.Exists("VORNA.xml.pending"));
    }
}

// A table that does not load is set aside by the module when the operator
// accepts that, in the working directory given.
TEST(VornaHost, AcceptsABadTableByItsWorkingDirectory) {
    const std::string broken = "<Tarn Delta=\"1\"><PTZ ID=\"1048576\"";
    TempDir dir;
    dir.Write("VORNA.xml", broken);
    TempDir elsewhere;
    HostProcess host({"--accept-bad-config", "--workdir", dir.path}, elsewhere.path);
    EXPECT_EQ(0, host.Finish()) << host.err;
    EXPECT_EQ(broken, dir.Read("VORNA.xml.bad"));
    EXPECT_NE(broken, dir.Read("VORNA.xml"));
}

// On a terminal the console prompts, edits lines and recalls them from its
// history; Ctrl-D ends it like the end of input, stops included.
TEST(VornaHost, ConsoleOnATerminalPromptsAndRecallsHistory) {
    TempDir dir;
    dir.Write("VORNA.xml", kOneCamera);
    HostProcess host({"--line", "COM1=Pelco-D"}, dir.path, true);
    const auto seen = [&](const std::string& part, size_t times) {
        return host.WaitUntil([&] { return Count(host.out, part) >= times; });
    };
    // Each line typed once the editor waits for it. The third line is
    // recalled, its number rubbed out and another typed.
    const std::vector<std::string> lines = {"camera 1 1 1\r", "preset goto 3\r", "\x1b[A\x7f" "4\r", "\x04"};
    for (size_t line = 0; line < lines.size(); ++line) {
        ASSERT_TRUE(seen("vorna> ", line + 1) && host.WaitForRawTerminal()) << host.out;
        host.Type(lines[line]);
    }
    EXPECT_TRUE(seen("COM1  FF 01 00 07 00 03 0B", 1)) << host.out;
    EXPECT_TRUE(seen("COM1  FF 01 00 07 00 04 0C", 1)) << host.out;
    EXPECT_EQ(0, host.Finish()) << host.out;
    EXPECT_THAT(host.out, HasSubstr("stopping pan, tilt, zoom, iris and focus of 1 camera"));
}

}  // namespace
