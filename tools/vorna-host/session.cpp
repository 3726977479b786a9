#include "session.h"

#include "message_router.h"
#include "printed_line.h"
#include "protocol_limits.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <fstream>
#include <iterator>

namespace vorna_host {

namespace {

int64_t EpochMilliseconds() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::system_clock::now().time_since_epoch())
        .count();
}

}  // namespace

void Session::Run(LineReader& reader) {
    reader_ = &reader;
    std::string line;
    for (int lineNumber = 1; reader.Next(line) == LineReader::Result::kLine; ++lineNumber) {
        if (settings_.echo) Echo(line);
        Command command;
        std::string error;
        if (!ParseCommand(line, command, error))
            Complain(lineNumber, error);
        else if (!Execute(command, lineNumber))
            return;
    }
}

bool Session::Execute(const Command& command, int lineNumber) {
    switch (command.kind) {
        case CommandKind::kCamera:
            return SelectCamera(command.camera, lineNumber);
        case CommandKind::kEvent:
        case CommandKind::kAlarm:
            return SendToCamera(command, lineNumber);
        case CommandKind::kConfig:
            if (!command.document.empty()) module_.UpdateConfiguration(command.document);
            HandConfiguration(command.path, lineNumber);
            return true;
        case CommandKind::kWait:
            return stop_.Sleep(command.milliseconds);
        case CommandKind::kList:
            Print(ListCameras(settings_.cameras ? settings_.cameras->Get() : CameraTable()));
            return true;
        case CommandKind::kStatus:
            if (cameraSelected_) Print("camera " + CameraName(camera_) + ": " + motion_.Describe(camera_) + "\n");
            if (settings_.lines) Print(settings_.lines->DescribeLines());
            return true;
        case CommandKind::kHelp:
            std::fputs(CommandHelp().c_str(), out_);
            std::fflush(out_);
            return true;
        case CommandKind::kQuit:
            quit_ = true;
            return false;
        case CommandKind::kNothing:
            return true;
    }
    return true;
}

bool Session::SendToCamera(const Command& command, int lineNumber) {
    if (!command.document.empty()) {
        module_.SendEvent(command.kind == CommandKind::kAlarm ? VORNA_TYPE_ALARM_EVENT : VORNA_TYPE_EVENT,
                          command.document);
        return true;
    }
    if (!cameraSelected_) {
        Complain(lineNumber, "no camera selected (use 'camera DEVICES DEVICE INPUT' first)");
        return true;
    }
    const bool alarm = command.kind == CommandKind::kAlarm;
    const std::vector<OpcodeCall> calls = alarm ? std::vector<OpcodeCall>{command.alarm.call} : command.calls;
    if (!MayGo(calls, lineNumber)) return true;
    motion_.Note(camera_, calls);
    if (alarm) {
        module_.SendEvent(VORNA_TYPE_ALARM_EVENT, AlarmDocument(camera_, command.alarm, EpochMilliseconds()));
        return true;
    }
    const unsigned long before = MessageRouter::SerialMessagesOnThisThread();
    module_.SendEvent(VORNA_TYPE_EVENT, EventDocument(camera_, command.calls));
    if (settings_.cameras && MessageRouter::SerialMessagesOnThisThread() == before && !OnlySettings(calls))
        Complain(lineNumber, CameraGuard(*settings_.cameras).WhyNothingWasSent(camera_));
    return true;
}

bool Session::SelectCamera(const CameraKey& camera, int lineNumber) {
    const std::string error = settings_.cameras ? CameraGuard(*settings_.cameras).CheckSelection(camera) : "";
    if (!error.empty()) {
        Complain(lineNumber, error);
        return true;
    }
    camera_ = camera;
    cameraSelected_ = true;
    return true;
}

bool Session::MayGo(const std::vector<OpcodeCall>& calls, int lineNumber) {
    if (settings_.cameras == nullptr) return true;
    const CameraGuard guard(*settings_.cameras);
    const std::string error = guard.CheckCalls(camera_, calls);
    if (!error.empty()) {
        Complain(lineNumber, error + "; nothing sent");
        return false;
    }
    const std::string surprise = guard.SurprisingEffect(camera_, calls);
    if (surprise.empty() || settings_.confirmed) return true;
    if (!settings_.interactive) {
        Complain(lineNumber, surprise + "; not sent (--yes lets a script send it)");
        return false;
    }
    if (Confirm(surprise + ". Send it? [y/N] ")) return true;
    Complain(lineNumber, "not sent");
    return false;
}

bool Session::Confirm(const std::string& question) {
    std::string answer;
    return reader_ != nullptr && reader_->Answer(question, out_, answer) == LineReader::Result::kLine &&
           !answer.empty() && (answer[0] == 'y' || answer[0] == 'Y');
}

void Session::HandConfiguration(const std::string& path, int lineNumber) {
    if (path.empty()) return;
    const std::string fullPath = path[0] == '/' ? path : settings_.baseDir + "/" + path;
    std::ifstream file(fullPath, std::ios::binary);
    if (!file) {
        Complain(lineNumber, "cannot read " + path + ": " + std::strerror(errno));
        return;
    }
    module_.UpdateConfiguration(std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()));
}

void Session::Echo(const std::string& line) {
    const size_t first = line.find_first_not_of(" \t\r");
    const bool isCommand = first != std::string::npos && line[first] != '#';
    const std::string echo = (isCommand ? TimeColumn(MillisecondsSince(settings_.start)) + "> " : "") + line + "\n";
    std::fputs(echo.c_str(), out_);
    std::fflush(out_);
}

void Session::Print(const std::string& text) {
    std::fputs(text.c_str(), out_);
    std::fflush(out_);
}

void Session::Complain(int lineNumber, const std::string& message) {
    std::fprintf(report_, "vorna-host: line %d: %s\n", lineNumber, message.c_str());
    std::fflush(report_);
}

}  // namespace vorna_host
