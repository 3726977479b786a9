#include "panel_api.h"

#include <tinyxml.h>

#include <nlohmann/json.hpp>
#include <optional>

#include "camera_guard.h"
#include "command_parser.h"
#include "protocol_limits.h"
#include "stop_on_exit.h"
#include "vorna/host_abi.h"
#include "vorna/ptz.h"

namespace vorna_host {

namespace {

using Json = nlohmann::json;

constexpr int kBadRequest = 400;
constexpr int kNotFound = 404;
constexpr int kNeedsConfirmation = 409;
constexpr int kOutOfRange = 422;
constexpr int kLongestDwell = 3600;

PanelReply Ok(const Json& body) { return PanelReply{200, body.dump()}; }

// The body as a JSON object (an empty body counts as {}).
bool ParseBody(const std::string& body, Json& request, std::string& error) {
    request = body.empty() ? Json::object() : Json::parse(body, nullptr, false);
    if (request.is_discarded()) {
        error = "the body is not JSON";
        return false;
    }
    if (!request.is_object()) {
        error = "the body must be a JSON object";
        return false;
    }
    return true;
}

// The member `name`, when present, as an integer from `low` to `high`.
bool OptionalInt(const Json& request, const char* name, int low, int high, std::optional<int>& value,
                 std::string& error) {
    if (!request.contains(name)) return true;
    const Json& member = request[name];
    if (!member.is_number_integer() || member.get<long long>() < low || member.get<long long>() > high) {
        error = std::string("\"") + name + "\" must be an integer from " + std::to_string(low) + " to " +
                std::to_string(high);
        return false;
    }
    value = member.get<int>();
    return true;
}

Json CameraJson(const TableCamera& camera, const CameraTable& table) {
    Json presets = Json::array();
    for (const auto& preset : camera.presetNames) presets.push_back({{"number", preset.first}, {"name", preset.second}});
    const ProtocolLimits* limits = table.Limits(camera.protocol);
    const SpeedRange speeds = SpeedRangeOf(camera.protocol);
    auto speed = [](int highest) { return highest < 0 ? Json() : Json(highest); };
    return {{"camera", {camera.key.devicesId, camera.key.deviceNumber, camera.key.inputNumber}},
            {"name", CameraName(camera.key)},
            {"port", camera.port},
            {"protocol", camera.protocol},
            {"address", camera.address},
            {"tour", {{"enabled", camera.tourEnabled}, {"dwell", camera.tourDwell}}},
            {"presets", presets},
            {"presetCount", limits ? limits->presets : 0},
            {"speeds", {{"pan", speed(speeds.pan)}, {"tilt", speed(speeds.tilt)}, {"zoom", speed(speeds.zoom)}}}};
}

TiXmlElement* AddChild(TiXmlNode& parent, const char* name) {
    return parent.LinkEndChild(new TiXmlElement(name))->ToElement();
}

// A camera update for the tour. Switching the tour alone is an Input with
// nothing but TourEnabled; a new dwell makes the module rebuild the camera's
// presets and tour, so they go along as the table holds them.
std::string TourDocument(const TableCamera& camera, std::optional<bool> enabled, std::optional<int> dwell) {
    TiXmlDocument document;
    TiXmlElement* root = AddChild(document, "Tarn");
    root->SetAttribute("Delta", 1);
    TiXmlElement* ptz = AddChild(*root, "PTZ");
    ptz->SetAttribute("ID", VORNA_MODULE_ID);
    TiXmlElement* devices = AddChild(*ptz, "Devices");
    devices->SetAttribute("ID", camera.key.devicesId);
    TiXmlElement* device = AddChild(*devices, "Device");
    device->SetAttribute("Number", camera.key.deviceNumber);
    TiXmlElement* input = AddChild(*device, "Input");
    input->SetAttribute("Number", camera.key.inputNumber);
    if (dwell) input->SetAttribute("TourDwell", *dwell);
    if (enabled) input->SetAttribute("TourEnabled", *enabled ? 1 : 0);
    if (dwell) {
        for (const auto& preset : camera.presetNames) {
            TiXmlElement* element = AddChild(*input, "Preset");
            element->SetAttribute("Number", preset.first);
            element->SetAttribute("Name", preset.second);
            for (const auto& stop : camera.tourPositions)
                if (stop.second == preset.first) AddChild(*element, "Tour")->SetAttribute("Position", stop.first);
        }
    }
    TiXmlPrinter printer;
    printer.SetStreamPrinting();
    document.Accept(&printer);
    return printer.Str();
}

}  // namespace

PanelReply PanelError(int status, const std::string& reason) { return PanelReply{status, Json{{"error", reason}}.dump()}; }

PanelReply PanelApi::Cameras() const {
    const CameraTable table = cameras_.Get();
    Json cameras = Json::array();
    for (const TableCamera& camera : table.cameras) cameras.push_back(CameraJson(camera, table));
    return Ok({{"cameras", cameras}});
}

PanelReply PanelApi::Lines() const {
    Json lines = Json::array();
    for (const MessageRouter::NamedCounters& line : counters_()) {
        const LineCounters& counters = line.counters;
        lines.push_back({{"line", line.line},
                         {"sent", counters.sent},
                         {"replaced", counters.replaced},
                         {"waiting", counters.waiting},
                         {"worstLatencyUs", counters.worstLatency.count()},
                         {"medianLatencyUs", counters.medianLatency.count()}});
    }
    return Ok({{"lines", lines}});
}

PanelReply PanelApi::Act(const CameraKey& camera, const std::string& action, const std::string& body) {
    const std::string unknown = CameraGuard(cameras_).CheckSelection(camera);
    if (!unknown.empty()) return PanelError(kNotFound, unknown);
    if (action == "command") return Command(camera, body);
    if (action == "move") return Move(camera, body);
    if (action == "tour") return Tour(camera, body);
    if (action != "hold") return PanelError(kNotFound, "no action '" + action + "' (command, move, hold, tour)");
    Json request;
    std::string error;
    if (!ParseBody(body, request, error)) return PanelError(kBadRequest, error);
    watchdog_.Request(camera, {}, MotionWatchdog::Clock::now());
    return Ok({{"held", true}});
}

std::vector<CameraKey> PanelApi::StopOverdue(MotionWatchdog::Clock::time_point now) {
    const std::vector<CameraKey> overdue = watchdog_.Overdue(now);
    for (const CameraKey& camera : overdue) module_.SendEvent(VORNA_TYPE_EVENT, EventDocument(camera, StopEveryAxis()));
    return overdue;
}

PanelReply PanelApi::Send(const CameraKey& camera, const std::vector<OpcodeCall>& calls, bool confirmed) {
    const CameraGuard guard(cameras_);
    const std::string error = guard.CheckCalls(camera, calls);
    if (!error.empty()) return PanelError(kOutOfRange, error + "; nothing sent");
    const std::string surprise = guard.SurprisingEffect(camera, calls);
    if (!surprise.empty() && !confirmed)
        return PanelError(kNeedsConfirmation, surprise + "; not sent (send it again with \"confirmed\": true)");
    watchdog_.Request(camera, calls, MotionWatchdog::Clock::now());
    const unsigned long before = MessageRouter::SerialMessagesOnThisThread();
    module_.SendEvent(VORNA_TYPE_EVENT, EventDocument(camera, calls));
    const unsigned long sent = MessageRouter::SerialMessagesOnThisThread() - before;
    Json reply{{"sent", sent}};
    if (sent == 0 && !OnlySettings(calls)) reply["note"] = guard.WhyNothingWasSent(camera);
    return Ok(reply);
}

PanelReply PanelApi::SendAlarm(const CameraKey& camera, const AlarmCall& alarm) {
    const std::string error = CameraGuard(cameras_).CheckCalls(camera, {alarm.call});
    if (!error.empty()) return PanelError(kOutOfRange, error + "; nothing sent");
    const int64_t now = std::chrono::duration_cast<std::chrono::milliseconds>(
                            std::chrono::system_clock::now().time_since_epoch())
                            .count();
    module_.SendEvent(VORNA_TYPE_ALARM_EVENT, AlarmDocument(camera, alarm, now));
    return Ok({{"alarm", alarm.start ? "start" : "end"}});
}

PanelReply PanelApi::Command(const CameraKey& camera, const std::string& body) {
    Json request;
    std::string error;
    if (!ParseBody(body, request, error)) return PanelError(kBadRequest, error);
    if (!request.contains("command") || !request["command"].is_string())
        return PanelError(kBadRequest, "expected {\"command\": TEXT} with a console command such as \"zoom in\"");
    if (request.contains("confirmed") && !request["confirmed"].is_boolean())
        return PanelError(kBadRequest, "\"confirmed\" must be true or false");
    const std::string text = request["command"].get<std::string>();
    vorna_host::Command command;
    if (!ParseCommand(text, command, error)) return PanelError(kBadRequest, error);
    if (command.kind == CommandKind::kEvent) return Send(camera, command.calls, request.value("confirmed", false));
    if (command.kind == CommandKind::kAlarm) return SendAlarm(camera, command.alarm);
    return PanelError(kBadRequest, "'" + text + "' is not a command for a camera");
}

PanelReply PanelApi::Move(const CameraKey& camera, const std::string& body) {
    Json request;
    std::string error;
    std::optional<int> pan, tilt;
    if (!ParseBody(body, request, error) || !OptionalInt(request, "pan", -1, 1, pan, error) ||
        !OptionalInt(request, "tilt", -1, 1, tilt, error))
        return PanelError(kBadRequest, error);
    static const int kPanOpcodes[] = {VORNA_OP_PAN_LEFT, VORNA_OP_STOP_PAN, VORNA_OP_PAN_RIGHT};
    static const int kTiltOpcodes[] = {VORNA_OP_TILT_DOWN, VORNA_OP_STOP_TILT, VORNA_OP_TILT_UP};
    return Send(camera, {{kPanOpcodes[pan.value_or(0) + 1], 0}, {kTiltOpcodes[tilt.value_or(0) + 1], 0}}, false);
}

PanelReply PanelApi::Tour(const CameraKey& camera, const std::string& body) {
    Json request;
    std::string error;
    std::optional<int> dwell;
    if (!ParseBody(body, request, error) || !OptionalInt(request, "dwell", 1, kLongestDwell, dwell, error))
        return PanelError(kBadRequest, error);
    std::optional<bool> enabled;
    if (request.contains("enabled")) {
        if (!request["enabled"].is_boolean()) return PanelError(kBadRequest, "\"enabled\" must be true or false");
        enabled = request["enabled"].get<bool>();
    }
    if (!enabled && !dwell) return PanelError(kBadRequest, "expected \"enabled\" (true or false), \"dwell\" or both");
    const CameraTable table = cameras_.Get();
    const TableCamera* found = table.Find(camera);
    if (found == nullptr) return PanelError(kNotFound, "no camera " + CameraName(camera) + " in the camera table");
    module_.UpdateConfiguration(TourDocument(*found, enabled, dwell));
    return Ok({{"tour", "updated"}});
}

}  // namespace vorna_host
