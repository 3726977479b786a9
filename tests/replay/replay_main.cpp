// The replay runner: plays one script against the built libvorna.so, in this
// process, on virtual time (see fake_time.h), and compares everything the
// module sent with the script's .expected file.
//
//   vorna_replay MODULE SCRIPT               exit 0 when the output matches
//   vorna_replay --regenerate MODULE SCRIPT  rewrite the .expected file
//
// A script is vorna-host's command language (camera, left, stop, preset ...,
// alarm, config, event, wait; see vorna-host's 'help'; a 'config FILE' is read
// from the working directory), plus lines for the
// test itself that start with '!':
//   !file NAME TEXT   write TEXT into NAME in the working directory
//   !mkdir NAME       !rmdir NAME       !rm NAME
//   !ln TARGET NAME   a symbolic link   !chmod MODE NAME (octal)
//   !stat NAME        "link to TARGET", "file MODE", "directory" or "missing"
//   !show NAME        print the file, line by line
//   !ls               list the working directory
//   !refuse N         the host callback answers N from now on (0 accepts)
//   !restart          Close and Unload (when started), then Load and Open
// The module is loaded and opened, and its worker started, at the first line
// that is not a '!' line, in a fresh working directory. 'wait MS' lets MS
// milliseconds of virtual time pass; commands take no time. The output shows
// each command with its time, then what came back: serial frames (stream,
// hex, and the text of text frames), log lines, configuration notices, the
// announcement, and the module's lines on standard error.
#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <mutex>
#include <sstream>
#include <string>
#include <vector>

#include "command_parser.h"
#include "documents.h"
#include "message_router.h"
#include "module_driver.h"
#include "printed_line.h"
#include "replay/fake_time.h"

namespace {

using vorna_host::Command;
using vorna_host::CommandKind;

std::mutex g_outputLock;
std::vector<std::string> g_output;
int g_answer = 0;
FILE* g_capturedStderr = nullptr;  // the module's standard error goes here
long g_stderrRead = 0;

long long NowMs() { return vorna_test::FakeNowNs() / 1000000; }

// Called with the output lock held.
void Emit(const std::string& text) { g_output.push_back(vorna_host::TimeColumn(NowMs()) + text); }

void EmitLocked(const std::string& text) {
    std::lock_guard<std::mutex> guard(g_outputLock);
    Emit(text);
}

// Moves what the module wrote on standard error since last time into the
// output. Called with the output lock held.
void DrainStderr() {
    std::fflush(stderr);
    std::fseek(g_capturedStderr, g_stderrRead, SEEK_SET);
    char buffer[1024];
    while (std::fgets(buffer, sizeof buffer, g_capturedStderr) != nullptr) {
        std::string line(buffer);
        if (!line.empty() && line.back() == '\n') line.pop_back();
        Emit("stderr " + line);
    }
    g_stderrRead = std::ftell(g_capturedStderr);
}

bool IsTextFrame(const std::string& bytes) {
    return std::all_of(bytes.begin(), bytes.end(), [](char c) {
        return (c >= 0x20 && c < 0x7F) || c == '\x02' || c == '\x03';
    });
}

// Every record is checked against what its type requires (reserved fields
// zero); a record that breaks the rule shows its header.
std::string Describe(const HostMessage& m, const std::string& payload) {
    const bool serial = m.type == VORNA_TYPE_SERIAL;
    const bool announcement = m.type == VORNA_TYPE_CONFIG && m.flags == VORNA_FLAGS_ANNOUNCEMENT;
    const uint64_t flags = serial ? VORNA_FLAGS_SERIAL : announcement ? VORNA_FLAGS_ANNOUNCEMENT : VORNA_FLAGS_NOTICE;
    std::string header;
    const bool reservedClear = m.reserved0 == 0 && m.reserved1 == 0 &&
                               std::all_of(std::begin(m.reserved2), std::end(m.reserved2), [](uint8_t b) { return b == 0; });
    if (m.size != sizeof(HostMessage) || m.version != 1 || m.flags != flags || !reservedClear ||
        m.length != payload.size() || (!serial && m.stream != VORNA_MODULE_ID))
        header = "record size " + std::to_string(m.size) + " version " + std::to_string(m.version) + " type " +
                 std::to_string(m.type) + " flags " + std::to_string(m.flags) + " stream " +
                 std::to_string(m.stream) + ": ";
    if (serial) {
        // FormatFrame's own time column is left out: Emit writes it.
        const std::string frame =
            vorna_host::FormatFrame(0, "stream " + std::to_string(m.stream),
                                    reinterpret_cast<const uint8_t*>(payload.data()), payload.size(), IsTextFrame(payload));
        const size_t timeColumn = vorna_host::TimeColumn(0).size();
        return header + frame.substr(timeColumn, frame.size() - timeColumn - 1);
    }
    if (m.type == VORNA_TYPE_LOG) return header + vorna_host::DescribeLog(payload);
    if (m.type == VORNA_TYPE_CONFIG) return header + (announcement ? "announcement " : "notice ") + payload;
    return header + "message " + payload;
}

int Record(HostMessage* message, int) {
    std::lock_guard<std::mutex> guard(g_outputLock);
    DrainStderr();
    Emit(Describe(*message, std::string(static_cast<const char*>(message->data), message->length)));
    return g_answer;
}

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

class Replay {
public:
    explicit Replay(vorna_host::ModuleDriver& module) : module_(module) {}

    void Run(std::istream& script) {
        std::string line;
        for (int number = 1; std::getline(script, line); ++number) {
            const size_t first = line.find_first_not_of(" \t");
            if (first == std::string::npos || line[first] == '#') continue;
            if (line[first] != '!' && !started_) Start();
            EmitLocked("> " + line.substr(first));
            if (line[first] == '!' ? !TestLine(line.substr(first + 1)) : !Execute(line, number)) break;
            Settle();
        }
        Stop();
    }

private:
    void Start() {
        module_.Start(&Record);
        started_ = true;
        Settle();
    }
    void Stop() {
        if (started_) module_.Stop();
        started_ = false;
        Settle();
    }
    // Lets the worker finish what the last line started.
    void Settle() {
        vorna_test::WaitUntilQuiet(started_ ? 1 : 0);
        std::lock_guard<std::mutex> guard(g_outputLock);
        DrainStderr();
    }

    bool Execute(const std::string& line, int number) {
        Command command;
        std::string error;
        if (!vorna_host::ParseCommand(line, command, error)) return Complain("line " + std::to_string(number) + ": " + error);
        switch (command.kind) {
            case CommandKind::kCamera:
                camera_ = command.camera;
                return true;
            case CommandKind::kEvent:
                module_.SendEvent(VORNA_TYPE_EVENT, command.document.empty()
                                                        ? vorna_host::EventDocument(camera_, command.calls)
                                                        : command.document);
                return true;
            case CommandKind::kAlarm:
                module_.SendEvent(VORNA_TYPE_ALARM_EVENT,
                                  command.document.empty()
                                      ? vorna_host::AlarmDocument(camera_, command.alarm, EpochMs())
                                      : command.document);
                return true;
            case CommandKind::kConfig:
                module_.UpdateConfiguration(command.document.empty() ? ReadFile(command.path)
                                                                     : command.document);
                return true;
            case CommandKind::kWait:
                vorna_test::AdvanceBy(int64_t{command.milliseconds} * 1000000, started_ ? 1 : 0);
                return true;
            case CommandKind::kQuit:
                return false;
            default:
                return true;
        }
    }

    bool TestLine(const std::string& line) {
        std::istringstream words(line);
        std::string verb, name;
        words >> verb >> name;
        if (verb == "file") {
            std::string text;
            std::getline(words >> std::ws, text);
            std::ofstream(name, std::ios::binary) << text;
        } else if (verb == "mkdir") {
            mkdir(name.c_str(), 0700);
        } else if (verb == "rmdir") {
            rmdir(name.c_str());
        } else if (verb == "rm") {
            unlink(name.c_str());
        } else if (verb == "ln" || verb == "chmod") {
            std::string second;
            words >> second;
            if (verb == "ln" ? symlink(name.c_str(), second.c_str()) : chmod(second.c_str(), std::stoi(name, nullptr, 8)))
                return Complain(verb + " failed");
        } else if (verb == "stat") {
            EmitLocked(name + ": " + Describe(name));
        } else if (verb == "show") {
            std::istringstream content(ReadFile(name));
            for (std::string row; std::getline(content, row);) EmitLocked("| " + row);
        } else if (verb == "ls") {
            EmitLocked("files:" + ListWorkDir());
        } else if (verb == "refuse") {
            g_answer = std::atoi(name.c_str());
        } else if (verb == "restart") {
            Stop();
            Start();
        } else {
            return Complain("unknown test line !" + verb);
        }
        return true;
    }

    static std::string Describe(const std::string& name) {
        struct stat info;
        if (lstat(name.c_str(), &info) != 0) return "missing";
        if (S_ISDIR(info.st_mode)) return "directory";
        char target[256] = {};
        if (S_ISLNK(info.st_mode) && readlink(name.c_str(), target, sizeof target - 1) > 0)
            return std::string("link to ") + target;
        char mode[16];
        std::snprintf(mode, sizeof mode, "file %04o", static_cast<unsigned>(info.st_mode & 07777));
        return mode;
    }

    static std::string ListWorkDir() {
        std::vector<std::string> names;
        DIR* dir = opendir(".");
        while (const dirent* entry = dir ? readdir(dir) : nullptr)
            if (entry->d_name[0] != '.') names.push_back(entry->d_name);
        if (dir) closedir(dir);
        std::sort(names.begin(), names.end());
        std::string listed;
        for (const std::string& n : names) listed += " " + n;
        return listed;
    }

    static int64_t EpochMs() {
        return std::chrono::duration_cast<std::chrono::milliseconds>(
                   std::chrono::system_clock::now().time_since_epoch())
            .count();
    }

    static bool Complain(const std::string& message) {
        EmitLocked("error " + message);
        return true;
    }

    vorna_host::ModuleDriver& module_;
    bool started_ = false;
    vorna_host::CameraKey camera_;
};

int Fail(const std::string& message) {
    std::fprintf(stdout, "vorna_replay: %s\n", message.c_str());
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    const bool regenerate = argc == 4 && std::string(argv[1]) == "--regenerate";
    if (argc != 3 && !regenerate) return Fail("usage: vorna_replay [--regenerate] MODULE SCRIPT");
    // The paths stay valid after the move into the working directory.
    char* absolute = realpath(argv[argc - 1], nullptr);
    if (absolute == nullptr) return Fail(std::string("cannot read ") + argv[argc - 1]);
    const std::string modulePath = argv[argc - 2], scriptPath = absolute;
    std::free(absolute);
    const std::string expectedPath = scriptPath.substr(0, scriptPath.rfind('.')) + ".expected";
    std::ifstream script(scriptPath);
    if (!script) return Fail("cannot read " + scriptPath);
    std::string error;
    auto module = vorna_host::ModuleDriver::Open(modulePath, error);
    if (!module) return Fail(error);

    char workDir[] = "/tmp/vorna-replay-XXXXXX";
    if (mkdtemp(workDir) == nullptr || chdir(workDir) != 0) return Fail("cannot make a working directory");
    g_capturedStderr = std::tmpfile();
    const int ownStderr = dup(2);
    dup2(fileno(g_capturedStderr), 2);

    vorna_test::StartFakeTime();
    Replay(*module).Run(script);
    module.reset();
    dup2(ownStderr, 2);
    if (chdir("/") == 0) std::system(("rm -rf '" + std::string(workDir) + "'").c_str());

    std::string actual;
    for (const std::string& line : g_output) actual += line + "\n";
    if (regenerate) {
        std::ofstream(expectedPath, std::ios::binary) << actual;
        return 0;
    }
    if (actual == ReadFile(expectedPath)) return 0;
    const std::string actualPath = std::string(workDir) + ".actual";
    std::ofstream(actualPath, std::ios::binary) << actual;
    std::printf("output differs from %s (regenerate with --regenerate once the change is meant):\n",
                expectedPath.c_str());
    std::fflush(stdout);
    std::system(("diff -u '" + expectedPath + "' '" + actualPath + "'; rm -f '" + actualPath + "'").c_str());
    return 1;
}
