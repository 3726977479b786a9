// The host's command line.
#pragma once

#include <string>
#include <vector>

namespace vorna_host {

constexpr int kDefaultBaud = 9600;

// --line NAME=PROTOCOL[@DEVICE][:BAUD]
struct LineOption {
    std::string name;      // the port name cameras refer to, e.g. "COM1"
    std::string protocol;  // one of the module's protocol names
    std::string device;    // empty: a virtual line printed to standard output
    int baud = kDefaultBaud;  // without one given: the protocol's usual rate
    bool meaning = true;      // printed frames say what they do (off with --raw)
};

struct HostOptions {
    std::string modulePath;  // empty: the libvorna.so built beside the host
    std::string workDir;     // empty: the current directory
    std::string scriptPath;  // empty: commands come from standard input
    std::vector<LineOption> lines;
    bool help = false;
    bool yes = false;  // commands with a surprising effect go without a question
    bool check = false;            // check VORNA.xml against the lines and end
    bool acceptBadConfig = false;  // start even when VORNA.xml does not load
    bool version = false;
    bool echo = false;  // print the frames of real lines as virtual lines show theirs
    bool raw = false;   // print frames without their meaning
    std::string httpAddress;  // empty: no control panel
    int httpPort = 0;         // 0: any free port
    std::string httpToken;    // empty: one is made up at start where one is needed
};

// Both return false with a message naming the offending argument.
bool ParseLineOption(const std::string& text, LineOption& line, std::string& error);
bool ParseOptions(const std::vector<std::string>& args, HostOptions& options, std::string& error);

// The usage text printed by --help.
std::string UsageText();

}  // namespace vorna_host
