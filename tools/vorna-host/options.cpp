#include "options.h"

#include <termios.h>

#include "device_line.h"
#include "known_protocols.h"
#include "protocol_limits.h"

namespace vorna_host {

namespace {

bool AllDigits(const std::string& text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

bool TakeBaud(const std::string& digits, LineOption& line, std::string& error) {
    line.baud = AllDigits(digits) && digits.size() <= 7 ? std::stoi(digits) : 0;
    speed_t speed;
    if (LookUpBaud(line.baud, speed)) return true;
    error = "bad baud rate '" + digits + "' (supported: " + SupportedBauds() + ")";
    return false;
}

// Splits "DEVICE[:BAUD]". Device paths may contain colons themselves
// (/dev/serial/by-path/...), so only an all-digit tail after the last colon,
// or an empty one, is taken as the baud rate.
bool SplitDevice(const std::string& text, LineOption& line, std::string& error) {
    const size_t colon = text.rfind(':');
    const std::string tail = colon == std::string::npos ? std::string() : text.substr(colon + 1);
    if (colon == std::string::npos || (!tail.empty() && !AllDigits(tail))) {
        line.device = text;
        return true;
    }
    line.device = text.substr(0, colon);
    return TakeBaud(tail, line, error);
}

// A virtual line has a baud rate too: its frames show when they would have
// left a real line at that rate.
bool ParseLineParts(const std::string& text, LineOption& line, std::string& error) {
    const size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0) {
        error = "expected NAME=PROTOCOL[@DEVICE][:BAUD]";
        return false;
    }
    line.name = text.substr(0, equals);
    const size_t at = text.find('@', equals);
    const size_t protocolEnd = at != std::string::npos ? at : text.find(':', equals);
    line.protocol = text.substr(equals + 1, protocolEnd == std::string::npos ? std::string::npos : protocolEnd - equals - 1);
    if (FindKnownProtocol(line.protocol) == nullptr) {
        error = "unknown protocol '" + line.protocol + "' (known: " + KnownProtocolNames() + ")";
        return false;
    }
    line.baud = UsualBaud(line.protocol);
    if (protocolEnd == std::string::npos) return true;
    if (at == std::string::npos) return TakeBaud(text.substr(protocolEnd + 1), line, error);
    if (at + 1 == text.size()) {
        error = "no device after '@'";
        return false;
    }
    return SplitDevice(text.substr(at + 1), line, error);
}

bool AddLine(const std::string& text, HostOptions& options, std::string& error) {
    LineOption line;
    if (!ParseLineOption(text, line, error)) return false;
    for (const LineOption& other : options.lines) {
        if (other.name == line.name) {
            error = "--line '" + text + "': line " + line.name + " is given twice";
            return false;
        }
    }
    options.lines.push_back(line);
    return true;
}

bool TakesValue(const std::string& name) {
    return name == "--module" || name == "--workdir" || name == "--script" || name == "--line" || name == "--http" ||
           name == "--http-token";
}

// "[ADDRESS:]PORT"; the address defaults to loopback, so the panel is only
// reachable from elsewhere when asked for.
bool ParseHttp(const std::string& text, HostOptions& options, std::string& error) {
    const size_t colon = text.rfind(':');
    const std::string port = colon == std::string::npos ? text : text.substr(colon + 1);
    options.httpAddress = colon == std::string::npos ? "127.0.0.1" : text.substr(0, colon);
    if (options.httpAddress.size() > 2 && options.httpAddress.front() == '[' && options.httpAddress.back() == ']')
        options.httpAddress = options.httpAddress.substr(1, options.httpAddress.size() - 2);
    if (AllDigits(port) && port.size() <= 5 && std::stoi(port) <= 65535 && !options.httpAddress.empty()) {
        options.httpPort = std::stoi(port);
        return true;
    }
    error = "--http '" + text + "': expected [ADDRESS:]PORT";
    return false;
}

bool ApplyOption(const std::string& name, const std::string& value, HostOptions& options, std::string& error) {
    if (name == "--line") return AddLine(value, options, error);
    if (name == "--module") options.modulePath = value;
    if (name == "--workdir") options.workDir = value;
    if (name == "--script") options.scriptPath = value;
    if (name == "--http") return ParseHttp(value, options, error);
    if (name == "--http-token") options.httpToken = value;
    return true;
}

// The switch an argument without value turns on, or null.
bool* FlagOption(const std::string& arg, HostOptions& options) {
    if (arg == "--yes") return &options.yes;
    if (arg == "--check") return &options.check;
    if (arg == "--accept-bad-config") return &options.acceptBadConfig;
    if (arg == "--version") return &options.version;
    if (arg == "--echo") return &options.echo;
    if (arg == "--raw") return &options.raw;
    return nullptr;
}

}  // namespace

bool ParseLineOption(const std::string& text, LineOption& line, std::string& error) {
    if (ParseLineParts(text, line, error)) return true;
    error = "--line '" + text + "': " + error;
    return false;
}

bool ParseOptions(const std::vector<std::string>& args, HostOptions& options, std::string& error) {
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        if (arg == "--help" || arg == "-h") {
            options.help = true;
            continue;
        }
        if (arg == "--meaning") {
            options.raw = false;
            continue;
        }
        if (bool* flag = FlagOption(arg, options)) {
            *flag = true;
            continue;
        }
        std::string name = arg;
        std::string value;
        const size_t equals = arg.find('=');
        const bool inlineValue = arg.compare(0, 2, "--") == 0 && equals != std::string::npos;
        if (inlineValue) {
            name = arg.substr(0, equals);
            value = arg.substr(equals + 1);
        }
        if (!TakesValue(name)) {
            error = "unknown argument '" + arg + "' (try --help)";
            return false;
        }
        if (!inlineValue) {
            if (i + 1 == args.size()) {
                error = "option " + name + " needs a value";
                return false;
            }
            value = args[++i];
        }
        if (!ApplyOption(name, value, options, error)) return false;
    }
    for (LineOption& line : options.lines) line.meaning = !options.raw;
    return true;
}

std::string UsageText() {
    return "usage: vorna-host [--module LIB] [--workdir DIR] [--script FILE] [--yes]\n"
           "                  [--accept-bad-config] [--line NAME=PROTOCOL[@DEVICE][:BAUD]]...\n"
           "                  [--http [ADDRESS:]PORT [--http-token TOKEN]]\n"
           "       vorna-host --check [--workdir DIR] [--line ...]...\n"
           "       vorna-host --version\n"
           "       vorna-host monitor DEVICE[:BAUD] [--protocol NAME]\n"
           "\n"
           "Loads the VORNA module as a recorder does, binds each --line to a camera\n"
           "protocol and runs operator commands from FILE or standard input ('help'\n"
           "lists them). Cameras come from VORNA.xml in DIR. 'monitor' watches a camera\n"
           "line driven by another keyboard or recorder without writing to it, finds its\n"
           "protocol and baud rate when not given, and prints every frame it sees.\n"
           "\n"
           "  --module LIB   the module (default: the libvorna.so built beside vorna-host)\n"
           "  --workdir DIR  where VORNA.xml lives (default: the current directory)\n"
           "  --script FILE  read commands from FILE instead of standard input\n"
           "  --yes          send commands with a surprising effect without asking\n"
           "  --check        report what is wrong in VORNA.xml for these lines; writes nothing\n"
           "  --accept-bad-config\n"
           "                 start even when VORNA.xml does not load (the module keeps\n"
           "                 it as VORNA.xml.bad and starts without cameras)\n"
           "  --version      print the versions of vorna-host and of the module\n"
           "  --line NAME=PROTOCOL[@DEVICE][:BAUD]\n"
           "                 a serial line; repeatable. Without a device the line is\n"
           "                 virtual and its frames are printed when they would have\n"
           "                 left the wire. BAUD defaults to the protocol's usual rate\n"
           "                 (Pelco-D 2400, Panasonic 9600, ...).\n"
           "  --echo         print the frames of real lines as virtual lines show them\n"
           "  --meaning      print what each frame does beside its bytes (the default)\n"
           "  --raw          print the bytes alone\n"
           "  --http [ADDRESS:]PORT\n"
           "                 serve the control panel (a page for a phone) and its JSON\n"
           "                 API; ADDRESS defaults to 127.0.0.1, 0.0.0.0 reaches it from\n"
           "                 the site's network. The host then runs until 'quit' or\n"
           "                 Ctrl-C, not only until the end of its commands\n"
           "  --http-token TOKEN\n"
           "                 the token every panel request must carry (default: made\n"
           "                 up and printed at start when ADDRESS is not loopback)\n"
           "\n"
           "Protocols: " + KnownProtocolNames() + "\n"
           "Baud rates: " + SupportedBauds() + "\n";
}

}  // namespace vorna_host
