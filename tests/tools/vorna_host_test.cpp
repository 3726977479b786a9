// vorna-host as a user runs it: real pseudo-terminal lines, virtual lines,
// the demo script, bad input and stop signals.
#include <gtest/gtest.h>
#include <fcntl.h>
#include <pty.h>
#include <termios.h>

#include <fstream>
#include <functional>
#include <iterator>
#include <memory>

#include "support/temp_dir.h"
#include "tools/host_process.h"
#include "tools/pseudo_terminal.h"

using namespace vorna_test;

namespace {

// One Pelco-D camera on COM1, address 1, no tour.
const char* const kOneCamera =
    "<Tarn Delta=\"1\"><PTZ ID=\"1048576\"><Devices ID=\"1\"><Device Number=\"1\">"
    "<Input Number=\"1\" SerialPort=\"COM1\" Address=\"1\" /></Device></Devices></PTZ></Tarn>";

const std::string kExamples = VORNA_EXAMPLES_DIR;

std::string Hex(const std::string& bytes) {
    static const char kDigits[] = "0123456789ABCDEF";
    std::string hex;
    for (unsigned char byte : bytes) {
        if (!hex.empty()) hex += ' ';
        hex += kDigits[byte >> 4];
        hex += kDigits[byte & 0xF];
    }
    return hex;
}

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

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

TEST(VornaHost, WritesWholeFramesToARawLineAtTheAskedBaudRate) {
    TempDir dir;
    dir.Write("VORNA.xml", kOneCamera);
    PseudoTerminal line;
    HostProcess host({"--line", "COM1=Pelco-D@" + line.slavePath + ":2400"}, dir.path);
    // The pan is read off the wire before the stop is typed: a stop that
    // found the pan still waiting would rightly replace it.
    host.Type("camera 1 1 1\nright\n");
    EXPECT_EQ("FF 01 00 02 1F 00 22", Hex(line.Received(7)));
    host.Type("stop\npreset goto 5\nquit\n");
    ASSERT_EQ(0, host.Finish(3000)) << host.err;

    // The stops of the 'stop' command collapse while one is on the wire.
    const std::string sent = line.Rest();
    const std::string preset = "FF 01 00 07 00 05 0D";
    const size_t presetAt = Hex(sent).find(preset);
    ASSERT_NE(std::string::npos, presetAt) << Hex(sent);
    EXPECT_TRUE(StopsOfAddressOne(Hex(sent).substr(0, presetAt - 1))) << Hex(sent);
    EXPECT_TRUE(StopsOfAddressOne(Hex(sent).substr(presetAt + preset.size() + 1))) << Hex(sent);
    termios settings;
    ASSERT_EQ(0, tcgetattr(line.slave, &settings));
    EXPECT_EQ(B2400, cfgetospeed(&settings));
    EXPECT_EQ(B2400, cfgetispeed(&settings));
    EXPECT_EQ(CS8, settings.c_cflag & (CSIZE | PARENB | CSTOPB));
    EXPECT_EQ(0u, settings.c_lflag & (ICANON | ECHO | ISIG));
    EXPECT_EQ(0u, settings.c_oflag & OPOST);
}

TEST(VornaHost, DemoScriptDrivesBothCamerasOnVirtualLines) {
    TempDir dir;
    dir.Write("VORNA.xml", ReadFile(kExamples + "/VORNA.xml"));
    HostProcess host({"--line", "COM1=Pelco-D", "--line", "COM2=Panasonic", "--script", kExamples + "/demo.script"},
                     dir.path);
    ASSERT_EQ(0, host.Finish(10000)) << host.err;

    const std::string panLeft = "COM2  02 41 44 30 31 3B 47 43 37 3A 39 30 32 38 38 37 30 03  |.AD01;GC7:9028870.|";
    EXPECT_GE(Count(host.out, panLeft), 3u) << "the worker repeats the Panasonic frame";
    EXPECT_NE(std::string::npos, host.out.find("|.AD01;GC7:9030000.|")) << "alarm: go to preset 1";
    for (const char* frame : {"COM1  FF 01 00 02 1F 00 22  = address 1: pan right 32",
                              "COM1  FF 01 00 03 00 03 07  = address 1: store preset 3",
                              "COM1  FF 01 00 07 00 03 0B  = address 1: go to preset 3"})
        EXPECT_NE(std::string::npos, host.out.find(frame)) << frame;
    EXPECT_EQ(Count(host.out, " ms  COM"), Count(host.out, "  = address 1: ")) << "every frame says what it does";
    const std::string tourPart = host.out.substr(host.out.find("> wait 2500"));
    EXPECT_NE(std::string::npos, tourPart.find("COM1  FF 01 00 07 00 01 09")) << "tour position 1";
    EXPECT_NE(std::string::npos, tourPart.find("COM1  FF 01 00 07 00 02 0A")) << "tour position 2";
    EXPECT_NE(std::string::npos, host.err.find("vorna-host: module VORNA 26.1.7.3\n"));
    EXPECT_NE(std::string::npos, host.err.find("vorna-host: configuration: 2 cameras, 12 protocols\n"));
}

// The time column of the first printed line that holds `part`.
long TimeOfLineWith(const std::string& out, const std::string& part) {
    const size_t at = out.find(part);
    if (at == std::string::npos) return -1;
    return std::stol(out.substr(out.rfind('\n', at) + 1));
}

TEST(VornaHost, VirtualLinesShowEachFrameWhenItWouldHaveLeftTheWire) {
    TempDir dir;
    dir.Write("VORNA.xml", ReadFile(kExamples + "/VORNA.xml"));
    dir.Write("pan.script", "camera 1 1 2\nleft\n");
    HostProcess host({"--line", "COM1=Pelco-D", "--line", "COM2=Panasonic:2400", "--script", "pan.script"}, dir.path);
    ASSERT_EQ(0, host.Finish(5000)) << host.err;

    // 18 bytes at 2400 baud take 75 ms.
    const long commanded = TimeOfLineWith(host.out, "> left");
    const long shown = TimeOfLineWith(host.out, "|.AD01;GC7:9028870.|");
    ASSERT_GE(commanded, 0) << host.out;
    EXPECT_GE(shown - commanded, 75) << host.out;
}

TEST(VornaHost, RefusesBadStartBeforeSendingAnything) {
    struct Row {
        std::vector<std::string> args;
        int status;
        const char* error;
    };
    const Row rows[] = {
        {{"--line", "COM1=Pelco-X"}, 2, "--line 'COM1=Pelco-X': unknown protocol 'Pelco-X' (known: Pelco-D,"},
        {{"--line", "COM1=Pelco-D@/dev/ttyS0:1234"}, 2,
         "--line 'COM1=Pelco-D@/dev/ttyS0:1234': bad baud rate '1234' (supported: 1200, 2400,"},
        {{"--baud", "9600"}, 2, "unknown argument '--baud' (try --help)"},
        {{"--line", "COM1=Pelco-D@/nonexistent/ttyS9"}, 1,
         "--line COM1: cannot open /nonexistent/ttyS9: No such file or directory"},
        {{"--line", "COM1=Pelco-D@/dev/null"}, 1, "--line COM1: cannot set up /dev/null as a serial line"},
        {{"--module", "/nonexistent/libvorna.so"}, 1, "cannot load module /nonexistent/libvorna.so"},
        {{"--script", "missing.script"}, 1, "cannot open script"},
        {{"--workdir", "/nonexistent"}, 1, "cannot enter working directory /nonexistent"},
        {{"monitor"}, 2, "monitor: no device"},
        {{"monitor", "/dev/ttyS0:1234"}, 2, "monitor: bad baud rate '1234' (supported: 1200, 2400,"},
        {{"monitor", "/dev/ttyS0", "--protocol", "Pelco-X"}, 2, "monitor: unknown protocol 'Pelco-X' (known: Pelco-D,"},
        {{"monitor", "/nonexistent/ttyS9"}, 1, "cannot open /nonexistent/ttyS9: No such file or directory"},
    };
    for (const Row& row : rows) {
        TempDir dir;
        HostProcess host(row.args, dir.path);
        EXPECT_EQ(row.status, host.Finish(3000)) << row.error;
        EXPECT_EQ(0u, host.err.find(std::string("vorna-host: ") + row.error)) << host.err;
        EXPECT_FALSE(dir.Exists("VORNA.xml")) << row.error << ": the module was opened";
        EXPECT_EQ("", host.out);
    }
}

TEST(VornaHost, ReportsBadCommandLinesByNumberAndGoesOn) {
    TempDir dir;
    dir.Write("VORNA.xml", kOneCamera);
    HostProcess host({"--line", "COM1=Pelco-D"}, dir.path);
    host.Type("left\ncamera 1 1 1\njump\npreset goto\ncamera 1 x 1\nconfig missing.xml\nright\n");
    ASSERT_EQ(0, host.Finish(3000)) << host.err;

    for (const char* error : {
             "vorna-host: line 1: no camera selected (use 'camera DEVICES DEVICE INPUT' first)\n",
             "vorna-host: line 3: unknown command 'jump' (try 'help')\n",
             "vorna-host: line 4: expected 'preset set|goto|clear N'\n",
             "vorna-host: line 5: expected 'camera DEVICES DEVICE INPUT'\n",
             "vorna-host: line 6: cannot read missing.xml: No such file or directory\n",
         })
        EXPECT_NE(std::string::npos, host.err.find(error)) << error << host.err;
    const size_t stops = Count(host.out, "COM1  FF 01 00 00 00 00 01");
    EXPECT_TRUE(stops == 1 || stops == 2) << host.out;
    EXPECT_EQ(1 + stops, Count(host.out, "COM1  FF")) << "one pan and the stops at the end\n" << host.out;
    EXPECT_NE(std::string::npos, host.out.find("COM1  FF 01 00 02 1F 00 22  = address 1: pan right 32, tilt still, zoom still\n"));
}

TEST(VornaHost, StopSignalDuringATourEndsCleanlyAndKeepsTheConfiguration) {
    for (int signal : {SIGTERM, SIGINT}) {
        TempDir dir;
        dir.Write("VORNA.xml", ReadFile(kExamples + "/VORNA.xml"));
        HostProcess host({"--line", "COM1=Pelco-D", "--line", "COM2=Panasonic"}, dir.path);
        const bool touring = host.WaitUntil(
            [&] {
                return Count(host.err, "configuration:") == 2 && Count(host.out, "COM1  FF 01 00 07 00 0") >= 1;
            },
            3000);
        ASSERT_TRUE(touring) << host.out << host.err;
        const std::string saved = dir.Read("VORNA.xml");
        host.Signal(signal);

        EXPECT_EQ(0, host.Finish(2000)) << host.err;
        EXPECT_EQ(saved, dir.Read("VORNA.xml"));
        EXPECT_NE(std::string::npos, saved.find("Protocol=\"Pelco-D\" SerialPort=\"COM1\""));
        EXPECT_NE(std::string::npos, saved.find("<Tour Position=\"2\" />"));
        EXPECT_FALSE(dir.Exists("VORNA.xml.pending"));
    }
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
        HostProcess host({"--line", "COM1=Pelco-D@" + line.slavePath + ":2400"}, dir.path);
        host.Type("camera 1 1 1\nright\n");
        ASSERT_EQ("FF 01 00 02 1F 00 22", Hex(line.Received(7))) << name;
        end(host);
        EXPECT_EQ(0, host.Finish(3000)) << name << host.err;
        EXPECT_TRUE(StopsOfAddressOne(Hex(line.Rest()))) << name;
        EXPECT_NE(std::string::npos, host.err.find("vorna-host: stopping pan, tilt, zoom, iris and focus of 1 camera "
                                                    "before closing\n"))
            << name << host.err;
    }
}

// Every number is checked against the selected camera's protocol before
// anything goes out; a command that sends nothing says so.
TEST(VornaHost, ChecksCommandsAgainstTheCamerasProtocol) {
    const std::string table =
        "<Tarn Delta=\"1\"><PTZ ID=\"1048576\"><Devices ID=\"1\"><Device Number=\"1\">"
        "<Input Number=\"1\" SerialPort=\"COM1\" Address=\"1\" /><Input Number=\"2\" SerialPort=\"COM2\" Address=\"1\" />"
        "<Input Number=\"3\" SerialPort=\"COM3\" Address=\"1\" /><Input Number=\"4\" SerialPort=\"COM1\" Address=\"300\" />"
        "<Input Number=\"5\" SerialPort=\"COM9\" Address=\"1\" /></Device></Devices></PTZ></Tarn>";
    // A command line and what the host says about it (empty: it goes out).
    const std::vector<std::pair<const char*, const char*>> rows = {
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
    ASSERT_EQ(0, host.Finish(3000)) << host.err;
    std::string complaints;
    for (size_t at = host.err.find("vorna-host: line "); at != std::string::npos;
         at = host.err.find("vorna-host: line ", at + 1))
        complaints += host.err.substr(at, host.err.find('\n', at) + 1 - at);
    EXPECT_EQ(expected, complaints);
    EXPECT_NE(std::string::npos, host.out.find("COM1  FF 01 00 02 3F 00 42  = address 1: pan right 64, tilt still, zoom still\n"))
        << host.out;

    TempDir confirmed;
    confirmed.Write("VORNA.xml", table);
    HostProcess yes({"--yes", "--raw", "--line", "COM3=AD-RS422"}, confirmed.path);
    yes.Type("camera 1 1 3\npreset clear 3\n");
    ASSERT_EQ(0, yes.Finish(3000)) << yes.err;
    EXPECT_NE(std::string::npos, yes.out.find("COM3  01 C7 01 02 35\n")) << yes.out << yes.err;
}

// --check reports every problem of the table on a line of its own and
// leaves the directory as it was.
TEST(VornaHost, CheckReportsTheTablesProblemsAndWritesNothing) {
    const std::string faulty =
        "<Tarn Delta=\"1\"><PTZ ID=\"1048576\"><Devices ID=\"1\"><Device Number=\"1\">"
        "<Input Number=\"1\" SerialPort=\"COM1\" Address=\"300\"><Preset Number=\"40\" Name=\"Far\"/>"
        "<Preset Number=\"7\"><Tour Position=\"3\"/></Preset></Input>"
        "<Input Number=\"2\" SerialPort=\"COM3\" Address=\"1\" /></Device></Devices></PTZ></Tarn>";
    const struct {
        std::string file;
        int status;
        const char* report;
    } rows[] = {
        {kOneCamera, 0, "VORNA.xml: no problems\n"},
        {faulty, 1,
         "camera 1 1 1: tour position 3 names preset 7, which has no name\n"
         "camera 1 1 1: address 300 is outside Pelco-D's addresses 0 to 255\n"
         "camera 1 1 1: preset 40 \"Far\" is beyond Pelco-D's 32 presets\n"
         "camera 1 1 2: port COM3 is not among the lines (--line COM3=PROTOCOL)\n"},
        {"<Tarn>\n<PTZ ID=\"1048576\">\n<Devices ID=\"1\"\n</Tarn>", 1,
         "VORNA.xml: Error reading Attributes. (row 4, column 1)\n"},
    };
    for (const auto& row : rows) {
        TempDir dir;
        dir.Write("VORNA.xml", row.file);
        TempDir elsewhere;
        HostProcess host({"--check", "--workdir", dir.path, "--line", "COM1=Pelco-D"}, elsewhere.path);
        EXPECT_EQ(row.status, host.Finish(3000)) << host.err;
        EXPECT_EQ(row.report, host.out);
        EXPECT_EQ(row.file, dir.Read("VORNA.xml"));
        EXPECT_FALSE(dir.Exists("VORNA.xml.bad") || dir.Exists("VORNA.xml.pending"));
    }
}

// A table that does not load stops the start before the module sees it,
// unless the operator accepts that the module sets it aside.
TEST(VornaHost, RefusesToStartOnATableThatDoesNotLoad) {
    const std::string broken = "<Tarn Delta=\"1\"><PTZ ID=\"1048576\"";
    for (const bool accept : {false, true}) {
        TempDir dir;
        dir.Write("VORNA.xml", broken);
        HostProcess host(accept ? std::vector<std::string>{"--accept-bad-config"} : std::vector<std::string>{},
                         dir.path);
        EXPECT_EQ(accept ? 0 : 1, host.Finish(3000)) << host.err;
        EXPECT_EQ(accept, host.err.find("vorna-host: VORNA.xml does not load: ") == std::string::npos) << host.err;
        EXPECT_EQ(accept ? broken : "(missing)", dir.Read("VORNA.xml.bad"));
        EXPECT_EQ(accept, dir.Read("VORNA.xml") != broken);
    }
}

// A real line runs at its protocol's usual rate, is announced, echoed on
// request and held exclusively: a second host gets a clear error.
TEST(VornaHost, HoldsARealLineExclusivelyAndEchoesItsFrames) {
    TempDir dir;
    dir.Write("VORNA.xml", kOneCamera);
    PseudoTerminal line;
    HostProcess host({"--echo", "--line", "COM1=Pelco-D@" + line.slavePath}, dir.path);
    host.Type("camera 1 1 1\nright\n");
    ASSERT_EQ("FF 01 00 02 1F 00 22", Hex(line.Received(7)));
    termios settings;
    ASSERT_EQ(0, tcgetattr(line.slave, &settings));
    EXPECT_EQ(B2400, cfgetospeed(&settings));

    TempDir other;
    HostProcess second({"--line", "COM1=Pelco-D@" + line.slavePath}, other.path);
    EXPECT_EQ(1, second.Finish(3000));
    EXPECT_EQ("vorna-host: --line COM1: " + line.slavePath + " is in use by another program; a line must have one writer\n",
              second.err);

    EXPECT_EQ(0, host.Finish(3000)) << host.err;
    EXPECT_NE(std::string::npos, host.err.find("vorna-host: line COM1: " + line.slavePath + ", Pelco-D, 2400 baud\n"));
    EXPECT_NE(std::string::npos, host.out.find(" ms  COM1  FF 01 00 02 1F 00 22  = address 1: pan right 32, tilt still, zoom still\n")) << host.out;
}

TEST(VornaHost, ListsTheCamerasAndTheSelectedCamerasMotion) {
    TempDir dir;
    dir.Write("VORNA.xml", kOneCamera);
    HostProcess host({"--line", "COM1=Pelco-D"}, dir.path);
    host.Type("list\ncamera 1 1 1\nleft\nspeed zoom 2\nzoom in\nstatus\n");
    ASSERT_EQ(0, host.Finish(3000)) << host.err;
    for (const char* line : {"1 1 1  port COM1  Pelco-D  address 1  tour off\n",
                             "camera 1 1 1: pan left at speed 31, tilt still, zoom in at speed 2, iris still, focus "
                             "still\n",
                             "0 replaced, "})
        EXPECT_NE(std::string::npos, host.out.find(line)) << line << host.out;
}

// On a terminal the console prompts, edits lines and recalls them from its
// history; Ctrl-D ends it like the end of input, stops included.
TEST(VornaHost, ConsoleOnATerminalPromptsAndRecallsHistory) {
    TempDir dir;
    dir.Write("VORNA.xml", kOneCamera);
    int terminal = -1;
    const std::string module = VORNA_LIBRARY_PATH;
    const pid_t pid = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (pid == 0) {
        if (chdir(dir.path.c_str()) == 0)
            execl(VORNA_HOST_PATH, VORNA_HOST_PATH, "--module", module.c_str(), "--line", "COM1=Pelco-D", nullptr);
        _exit(127);
    }
    std::string seen;
    const auto readUntil = [&](const std::string& wanted, size_t count) {
        for (int attempt = 0; attempt < 300 && Count(seen, wanted) < count; ++attempt) {
            pollfd entry{terminal, POLLIN, 0};
            if (poll(&entry, 1, 10) <= 0) continue;
            char chunk[512];
            const ssize_t got = read(terminal, chunk, sizeof chunk);
            if (got > 0) seen.append(chunk, static_cast<size_t>(got));
        }
        return Count(seen, wanted) >= count;
    };
    EXPECT_TRUE(readUntil("vorna> ", 1)) << seen;
    // Each line typed at its prompt: keys typed ahead of the editor would
    // reach the terminal before it leaves line mode. The last line is
    // recalled, its number rubbed out and another typed.
    const std::vector<std::string> lines = {"camera 1 1 1\r", "preset goto 3\r", "\x1b[A\x7f" "4\r"};
    for (size_t line = 0; line < lines.size(); ++line) {
        ASSERT_EQ(static_cast<ssize_t>(lines[line].size()), write(terminal, lines[line].data(), lines[line].size()));
        if (line + 1 < lines.size()) {
            EXPECT_TRUE(readUntil("vorna> ", line + 2)) << seen;
        }
    }
    EXPECT_TRUE(readUntil("COM1  FF 01 00 07 00 03 0B", 1)) << seen;
    EXPECT_TRUE(readUntil("COM1  FF 01 00 07 00 04 0C", 1)) << seen;
    ASSERT_EQ(1, write(terminal, "\x04", 1));
    EXPECT_TRUE(readUntil("stopping pan, tilt, zoom, iris and focus of 1 camera", 1)) << seen;
    int status = -1;
    waitpid(pid, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    close(terminal);
}

// An adapter unplugged mid-session is reported once; when it is back under
// its name, the host opens it again and goes on sending.
TEST(VornaHost, ReopensAnUnpluggedDeviceWhenItReturns) {
    TempDir dir;
    dir.Write("VORNA.xml", kOneCamera);
    const std::string device = dir.File("ttyCOM1");
    auto line = std::make_unique<PseudoTerminal>();
    // The host must not inherit the terminal, or it would keep it alive.
    for (int fd : {line->master, line->slave}) fcntl(fd, F_SETFD, FD_CLOEXEC);
    ASSERT_EQ(0, symlink(line->slavePath.c_str(), device.c_str()));
    HostProcess host({"--line", "COM1=Pelco-D@" + device}, dir.path);
    host.Type("camera 1 1 1\nright\n");
    ASSERT_EQ("FF 01 00 02 1F 00 22", Hex(line->Received(7)));

    line.reset();
    unlink(device.c_str());
    host.Type("left\n");
    ASSERT_TRUE(host.WaitUntil([&] { return Count(host.err, " is gone ") == 1; }, 3000)) << host.err;
    host.Type("up\n");
    PseudoTerminal back;
    ASSERT_EQ(0, symlink(back.slavePath.c_str(), device.c_str()));
    host.Type("preset goto 5\n");
    EXPECT_NE(std::string::npos, Hex(back.Received(100)).find("FF 01 00 07 00 05 0D"));
    host.Type("quit\n");
    EXPECT_EQ(0, host.Finish(3000)) << host.err;
    EXPECT_EQ(1u, Count(host.err, " is gone ")) << host.err;
    EXPECT_EQ(1u, Count(host.err, "vorna-host: line COM1: " + device + " is back\n")) << host.err;
}

}  // namespace
