#include "documents.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "vorna/host_abi.h"
#include "vorna/ptz.h"

namespace vorna_host {

namespace {

std::string EscapeAttribute(const std::string& value) {
    std::string escaped;
    for (char c : value) {
        switch (c) {
            case '&': escaped += "&amp;"; break;
            case '<': escaped += "&lt;"; break;
            case '>': escaped += "&gt;"; break;
            case '"': escaped += "&quot;"; break;
            default: escaped += c;
        }
    }
    return escaped;
}

std::string Attribute(const char* name, const std::string& value) {
    return std::string(" ") + name + "=\"" + EscapeAttribute(value) + "\"";
}

std::string Attribute(const char* name, long long value) { return Attribute(name, std::to_string(value)); }

std::string CommandInput(const CameraKey& camera, const OpcodeCall& call) {
    return "<Input" + Attribute("Number", camera.inputNumber) + Attribute("Opcode", call.opcode) +
           Attribute("Parm", FormatParm(call.parm));
}

std::string CameraEvent(const CameraKey& camera, const std::string& inputs) {
    return "<Tarn><PTZ" + Attribute("ID", VORNA_MODULE_ID) + "><Devices" + Attribute("ID", camera.devicesId) +
           "><Device" + Attribute("Number", camera.deviceNumber) + "><Video>" + inputs +
           "</Video></Device></Devices></PTZ></Tarn>";
}

}  // namespace

std::string FormatParm(double value) {
    char text[32];
    // Whole numbers in plain digits: %g would write 10 as "1e+01".
    if (value == std::trunc(value) && std::fabs(value) < 1e15) {
        std::snprintf(text, sizeof text, "%.0f", value);
        return text;
    }
    for (int precision = 1; precision <= 17; ++precision) {
        std::snprintf(text, sizeof text, "%.*g", precision, value);
        if (std::strtod(text, nullptr) == value) break;
    }
    return text;
}

std::string EventDocument(const CameraKey& camera, const std::vector<OpcodeCall>& calls) {
    std::string inputs;
    for (const OpcodeCall& call : calls) inputs += CommandInput(camera, call) + " />";
    return CameraEvent(camera, inputs);
}

std::string AlarmDocument(const CameraKey& camera, const AlarmCall& alarm, int64_t nowMs) {
    const std::string input = CommandInput(camera, alarm.call) + Attribute("Time", nowMs / 1000) +
                              Attribute("Milliseconds", nowMs % 1000) + Attribute("Action", alarm.action) +
                              Attribute("Alarm", alarm.start ? 1 : 0) + " />";
    return CameraEvent(camera, input);
}

std::string SerialPortDocument(const std::vector<LineBinding>& lines) {
    std::string devices;
    for (const LineBinding& line : lines) {
        devices += "<Device" + Attribute("Port", line.port) + Attribute("Protocol", line.protocol) +
                   Attribute("Use", VORNA_SERIAL_USE_PTZ) + Attribute("StreamID", static_cast<long long>(line.stream)) + " />";
    }
    return "<Tarn Delta=\"0\"><Serial" + Attribute("ID", VORNA_SERIAL_ID) + "><Input>" + devices +
           "</Input></Serial></Tarn>";
}

}  // namespace vorna_host
