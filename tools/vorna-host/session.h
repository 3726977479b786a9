// Carries out operator commands against the module, one line at a time: a
// bad line is reported with its number and the rest goes on.
#pragma once

#include <chrono>
#include <cstdio>
#include <string>

#include "camera_guard.h"
#include "camera_motion.h"
#include "command_parser.h"
#include "line_reader.h"
#include "message_router.h"
#include "module_driver.h"
#include "stop_signal.h"

namespace vorna_host {

class Session {
public:
    struct Settings {
        std::string baseDir;  // relative paths in commands are taken from here
        bool echo = false;    // show a script as it runs: commands with their time, other lines as they stand
        std::chrono::steady_clock::time_point start;  // time zero of the echo
        const LatestCameraTable* cameras = nullptr;    // the module's table; null: commands are not checked
        bool interactive = false;                      // an operator at a terminal answers questions
        bool confirmed = false;                        // --yes: surprising commands go without a question
        const MessageRouter* lines = nullptr;          // whose counters 'status' shows; null: none
    };

    Session(ModuleDriver& module, StopSignal& stop, Settings settings, FILE* out, FILE* report)
        : module_(module), stop_(stop), settings_(std::move(settings)), out_(out), report_(report) {}

    // Until end of input, 'quit' or a stop signal.
    void Run(LineReader& reader);

    // What the session told each camera it commanded.
    const CameraMotion& Motion() const { return motion_; }
    // True when the operator ended the session with 'quit'.
    bool Quit() const { return quit_; }

private:
    // False when the session ends.
    bool Execute(const Command& command, int lineNumber);
    bool SendToCamera(const Command& command, int lineNumber);
    bool SelectCamera(const CameraKey& camera, int lineNumber);
    // False, with the reason reported, when the command must not go out.
    bool MayGo(const std::vector<OpcodeCall>& calls, int lineNumber);
    bool Confirm(const std::string& question);
    void HandConfiguration(const std::string& path, int lineNumber);
    void Echo(const std::string& line);
    void Print(const std::string& text);
    void Complain(int lineNumber, const std::string& message);

    ModuleDriver& module_;
    StopSignal& stop_;
    Settings settings_;
    FILE* out_;
    FILE* report_;
    bool cameraSelected_ = false;
    bool quit_ = false;
    CameraKey camera_;
    CameraMotion motion_;
    LineReader* reader_ = nullptr;
};

}  // namespace vorna_host
