#include "command_parser.h"

#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <sstream>

#include "vorna/ptz.h"

namespace vorna_host {

namespace {

// A verb, optionally followed by one fixed word and a number, that becomes
// one opcode (the number is its parameter).
struct OpcodeVerb {
    const char* verb;
    const char* word;  // null: the verb stands alone
    int opcode;
    bool takesNumber;
};

const OpcodeVerb kOpcodeVerbs[] = {
    {"left", nullptr, VORNA_OP_PAN_LEFT, false},
    {"right", nullptr, VORNA_OP_PAN_RIGHT, false},
    {"up", nullptr, VORNA_OP_TILT_UP, false},
    {"down", nullptr, VORNA_OP_TILT_DOWN, false},
    {"zoom", "in", VORNA_OP_ZOOM_IN, false},
    {"zoom", "out", VORNA_OP_ZOOM_OUT, false},
    {"iris", "open", VORNA_OP_IRIS_OPEN, false},
    {"iris", "close", VORNA_OP_IRIS_CLOSE, false},
    {"iris", "stop", VORNA_OP_STOP_IRIS, false},
    {"focus", "near", VORNA_OP_FOCUS_NEAR, false},
    {"focus", "far", VORNA_OP_FOCUS_FAR, false},
    {"focus", "stop", VORNA_OP_STOP_FOCUS, false},
    {"preset", "set", VORNA_OP_SET_PRESET, true},
    {"preset", "goto", VORNA_OP_GO_TO_PRESET, true},
    {"preset", "clear", VORNA_OP_CLEAR_PRESET, true},
    {"pattern", "run", VORNA_OP_RUN_PATTERN, true},
    {"pattern", "record", VORNA_OP_START_PATTERN_RECORDING, true},
    {"pattern", "stop", VORNA_OP_STOP_PATTERN_RECORDING, true},
    {"menu", "on", VORNA_OP_MENU_ON, false},
    {"menu", "off", VORNA_OP_MENU_OFF, false},
    {"speed", "pan", VORNA_OP_SET_PAN_SPEED, true},
    {"speed", "tilt", VORNA_OP_SET_TILT_SPEED, true},
    {"speed", "zoom", VORNA_OP_SET_ZOOM_SPEED, true},
};

// The host's own commands and those with their own argument shapes.
const char* const kOtherUsages[] = {
    "camera DEVICES DEVICE INPUT",
    "stop",
    "raw VALUE",
    "op OPCODE [PARM]",
    "alarm start|end ACTION OPCODE PARM",
    "config FILE",
    "event <DOCUMENT>",
    "wait MS",
    "list",
    "status",
    "help",
    "quit",
};

// What each command does, by its first word, for 'help'.
const struct {
    const char* verb;
    const char* meaning;
} kMeanings[] = {
    {"left", "pan left at the pan speed"},
    {"right", "pan right at the pan speed"},
    {"up", "tilt up at the tilt speed"},
    {"down", "tilt down at the tilt speed"},
    {"zoom", "zoom the lens in (tele) or out (wide)"},
    {"iris", "open or close the iris, or stop it"},
    {"focus", "focus near or far, or stop focusing"},
    {"preset", "store the position as preset N, go to it, or clear it"},
    {"pattern", "run pattern N, or start or stop recording it"},
    {"menu", "open or close the camera's on-screen menu"},
    {"speed", "set the speed of later pan, tilt or zoom motion"},
    {"camera", "select the camera that later commands go to"},
    {"stop", "stop pan, tilt and zoom"},
    {"raw", "send the protocol's raw command VALUE"},
    {"op", "send any opcode (0 to 73) with its parameter"},
    {"alarm", "start or end an alarm command on the camera"},
    {"config", "hand a configuration file to the module"},
    {"wait", "wait MS milliseconds"},
    {"list", "list the configured cameras: port, protocol, address, tour"},
    {"status", "show the selected camera's motion as last commanded, and each line's counters"},
    {"help", "show this list"},
    {"quit", "stop the cameras that were moved and end"},
};

// Decimal, or with base 0 also "0x" hexadecimal.
bool ParseInt(const std::string& text, long long low, long long high, long long& value, int base = 10) {
    if (text.empty()) return false;
    errno = 0;
    char* end = nullptr;
    value = std::strtoll(text.c_str(), &end, base);
    return errno == 0 && *end == '\0' && value >= low && value <= high;
}

bool ParseInt(const std::string& text, int& value) {
    long long wide;
    if (!ParseInt(text, INT_MIN, INT_MAX, wide)) return false;
    value = static_cast<int>(wide);
    return true;
}

bool ParseNumber(const std::string& text, double& value) {
    if (text.empty()) return false;
    char* end = nullptr;
    value = std::strtod(text.c_str(), &end);
    return *end == '\0' && std::isfinite(value);
}

// "preset set|goto|clear N": the usage of a verb, from the table.
std::string VerbUsage(const std::string& verb) {
    std::string words;
    bool takesNumber = false;
    for (const OpcodeVerb& entry : kOpcodeVerbs) {
        if (verb != entry.verb) continue;
        if (entry.word == nullptr) return verb;
        words += (words.empty() ? "" : "|") + std::string(entry.word);
        takesNumber = entry.takesNumber;
    }
    return verb + " " + words + (takesNumber ? " N" : "");
}

bool IsOpcodeVerb(const std::string& verb) {
    for (const OpcodeVerb& entry : kOpcodeVerbs)
        if (verb == entry.verb) return true;
    return false;
}

bool ParseOpcodeVerb(const std::vector<std::string>& words, Command& command) {
    for (const OpcodeVerb& entry : kOpcodeVerbs) {
        if (words[0] != entry.verb) continue;
        const size_t wordCount = (entry.word ? 2 : 1) + (entry.takesNumber ? 1 : 0);
        if (words.size() != wordCount || (entry.word && words[1] != entry.word)) continue;
        OpcodeCall call{entry.opcode, 0};
        if (entry.takesNumber && !ParseNumber(words.back(), call.parm)) return false;
        command.kind = CommandKind::kEvent;
        command.calls.push_back(call);
        return true;
    }
    return false;
}

// The module passes a raw value to the protocol as the 32-bit integer part of
// the parameter, read back as unsigned: values above 0x7FFFFFFF travel as
// their negative two's-complement twins.
bool ParseRawValue(const std::string& text, double& parm) {
    long long value;
    const bool octal = text.size() > 1 && text[0] == '0' && text[1] != 'x' && text[1] != 'X';
    if (octal) return false;
    if (!ParseInt(text, 0, UINT32_MAX, value, 0)) return false;
    parm = static_cast<double>(static_cast<int32_t>(static_cast<uint32_t>(value)));
    return true;
}

bool ParseAlarm(const std::vector<std::string>& words, Command& command) {
    if (words.size() != 5 || (words[1] != "start" && words[1] != "end")) return false;
    command.alarm.start = words[1] == "start";
    if (!ParseInt(words[2], command.alarm.action) || !ParseInt(words[3], command.alarm.call.opcode) ||
        !ParseNumber(words[4], command.alarm.call.parm))
        return false;
    command.kind = CommandKind::kAlarm;
    return true;
}

bool ParseOtherCommand(const std::vector<std::string>& words, const std::string& rest, Command& command) {
    const std::string& verb = words[0];
    const size_t count = words.size();
    if (verb == "camera") {
        command.kind = CommandKind::kCamera;
        return count == 4 && ParseInt(words[1], command.camera.devicesId) &&
               ParseInt(words[2], command.camera.deviceNumber) && ParseInt(words[3], command.camera.inputNumber);
    }
    if (verb == "stop") {
        command.kind = CommandKind::kEvent;
        command.calls = {{VORNA_OP_STOP_PAN, 0}, {VORNA_OP_STOP_TILT, 0}, {VORNA_OP_STOP_ZOOM, 0}};
        return count == 1;
    }
    if (verb == "raw") {
        command.kind = CommandKind::kEvent;
        command.calls = {{VORNA_OP_RAW_COMMAND, 0}};
        return count == 2 && ParseRawValue(words[1], command.calls[0].parm);
    }
    if (verb == "op") {
        command.kind = CommandKind::kEvent;
        command.calls = {{0, 0}};
        return (count == 2 || count == 3) && ParseInt(words[1], command.calls[0].opcode) &&
               (count == 2 || ParseNumber(words[2], command.calls[0].parm));
    }
    if ((verb == "event" || verb == "alarm" || verb == "config") && rest[0] == '<') {
        command.kind = verb == "event"   ? CommandKind::kEvent
                       : verb == "alarm" ? CommandKind::kAlarm
                                         : CommandKind::kConfig;
        command.document = rest;
        return true;
    }
    if (verb == "alarm") return ParseAlarm(words, command);
    if (verb == "config") {
        command.kind = CommandKind::kConfig;
        command.path = rest;
        return !rest.empty();
    }
    if (verb == "wait") {
        long long milliseconds;
        command.kind = CommandKind::kWait;
        if (count != 2 || !ParseInt(words[1], 0, INT_MAX, milliseconds)) return false;
        command.milliseconds = static_cast<int>(milliseconds);
        return true;
    }
    if (verb == "list") command.kind = CommandKind::kList;
    if (verb == "status") command.kind = CommandKind::kStatus;
    if (verb == "help") command.kind = CommandKind::kHelp;
    if (verb == "quit") command.kind = CommandKind::kQuit;
    return count == 1;
}

std::string OtherUsage(const std::string& verb) {
    for (const char* usage : kOtherUsages) {
        const std::string text = usage;
        if (text.compare(0, verb.size(), verb) == 0 && (text.size() == verb.size() || text[verb.size()] == ' '))
            return text;
    }
    return std::string();
}

}  // namespace

bool ParseCommand(const std::string& line, Command& command, std::string& error) {
    command = Command();
    std::istringstream stream(line);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) words.push_back(word);
    if (words.empty() || words[0][0] == '#') return true;

    const std::string& verb = words[0];
    if (IsOpcodeVerb(verb)) {
        if (ParseOpcodeVerb(words, command)) return true;
        error = "expected '" + VerbUsage(verb) + "'";
        return false;
    }
    const std::string usage = OtherUsage(verb);
    if (usage.empty()) {
        error = "unknown command '" + verb + "' (try 'help')";
        return false;
    }
    const size_t restStart = line.find_first_not_of(" \t", line.find(verb) + verb.size());
    const size_t restEnd = line.find_last_not_of(" \t\r");
    const std::string rest =
        restStart == std::string::npos ? std::string() : line.substr(restStart, restEnd - restStart + 1);
    if (ParseOtherCommand(words, rest, command)) return true;
    command = Command();
    error = "expected '" + usage + "'";
    return false;
}

// "  zoom in|out                          zoom the lens in (tele) or out (wide)"
std::string HelpLine(const std::string& usage) {
    constexpr size_t kUsageWidth = 38;
    const std::string verb = usage.substr(0, usage.find(' '));
    for (const auto& entry : kMeanings) {
        if (verb != entry.verb) continue;
        const std::string padding(usage.size() < kUsageWidth ? kUsageWidth - usage.size() : 1, ' ');
        return "  " + usage + padding + entry.meaning + "\n";
    }
    return "  " + usage + "\n";
}

std::string CommandHelp() {
    std::string help = "Commands (one per line; '#' starts a comment):\n";
    std::string previousVerb;
    for (const OpcodeVerb& entry : kOpcodeVerbs) {
        if (entry.verb != previousVerb) help += HelpLine(VerbUsage(entry.verb));
        previousVerb = entry.verb;
    }
    for (const char* usage : kOtherUsages) help += HelpLine(usage);
    help +=
        "'stop' stops pan, tilt and zoom. Other opcodes through 'op': " + std::to_string(VORNA_OP_AUTO_IRIS) +
        " auto iris,\n" + std::to_string(VORNA_OP_AUTO_FOCUS) + " auto focus, " + std::to_string(VORNA_OP_FLIP) +
        " flip, " + std::to_string(VORNA_OP_APPLE_PEEL) + " apple peel, " + std::to_string(VORNA_OP_PATTERN_ACTION_2) +
        " pattern action 2, " + std::to_string(VORNA_OP_MENU_ENTER) + " menu enter.\n"
        "File paths are taken relative to the directory vorna-host was started in.\n"
        "'event', 'alarm' and 'config' followed by a document starting with '<' send it as it is.\n";
    return help;
}

}  // namespace vorna_host
