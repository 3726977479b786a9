// Operator commands, one per line: friendly verbs that become opcodes, and
// the host's own commands (camera selection, alarms, configuration, waits).
#pragma once

#include <string>
#include <vector>

#include "documents.h"

namespace vorna_host {

enum class CommandKind {
    kNothing,  // blank line or comment
    kCamera,   // select the camera that later commands address
    kEvent,    // immediate commands for the selected camera
    kAlarm,    // alarm start or end for the selected camera
    kConfig,   // hand a configuration file to the module
    kWait,
    kList,    // the configured cameras
    kStatus,  // the selected camera's motion as last commanded
    kHelp,
    kQuit,
};

struct Command {
    CommandKind kind = CommandKind::kNothing;
    CameraKey camera;               // kCamera
    std::vector<OpcodeCall> calls;  // kEvent
    AlarmCall alarm;                // kAlarm
    std::string path;               // kConfig
    std::string document;           // kEvent, kAlarm, kConfig: a raw document, sent as it is
    int milliseconds = 0;           // kWait
};

// False with a message (without line number) for a line that is not a
// command.
bool ParseCommand(const std::string& line, Command& command, std::string& error);

// The command list printed by 'help'.
std::string CommandHelp();

}  // namespace vorna_host
