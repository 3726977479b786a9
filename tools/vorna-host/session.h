// Carries out operator commands against the module, one line at a time: a
// bad line is reported with its number and the rest goes on.
#pragma once

#include <chrono>
#include <cstdio>
#include <string>

#include "camera_motion.h"
#include "command_parser.h"
#include "line_reader.h"
#include "module_driver.h"
#include "stop_signal.h"

namespace vorna_host {

class Session {
public:
    struct Settings {
        std::string baseDir;  // relative paths in commands are taken from here
        bool echo = false;    // show a script as it runs: commands with their time, other lines as they stand
        std::chrono::steady_clock::time_point start;  // time zero of the echo
    };

    Session(ModuleDriver& module, StopSignal& stop, Settings settings, FILE* out, FILE* report)
        : module_(module), stop_(stop), settings_(std::move(settings)), out_(out), report_(report) {}

    // Until end of input, 'quit' or a stop signal.
    void Run(LineReader& reader);

    // What the session told each camera it commanded.
    const CameraMotion& Motion() const { return motion_; }

private:
    // False when the session ends.
    bool Execute(const Command& command, int lineNumber);
    bool SendToCamera(const Command& command, int lineNumber);
    void HandConfiguration(const std::string& path, int lineNumber);
    void Echo(const std::string& line);
    void Complain(int lineNumber, const std::string& message);

    ModuleDriver& module_;
    StopSignal& stop_;
    Settings settings_;
    FILE* out_;
    FILE* report_;
    bool cameraSelected_ = false;
    CameraKey camera_;
    CameraMotion motion_;
};

}  // namespace vorna_host
