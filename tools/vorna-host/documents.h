// The XML documents the host hands to the module: operator events (Write,
// types 8 and 4) and the serial-port document that binds lines to protocols
// (IOCTL op 2).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vorna_host {

// A camera as events address it.
struct CameraKey {
    int devicesId = 0;
    int deviceNumber = 0;
    int inputNumber = 0;
};

struct OpcodeCall {
    int opcode = 0;
    double parm = 0;
};

struct AlarmCall {
    bool start = true;  // false: the alarm ends
    int action = 0;     // pairs an alarm's end with its start
    OpcodeCall call;
};

struct LineBinding {
    std::string port;
    std::string protocol;
    uint64_t stream = 0;
};

// Immediate commands for one camera, carried out in order.
std::string EventDocument(const CameraKey& camera, const std::vector<OpcodeCall>& calls);

// An alarm start or end stamped with `nowMs` (milliseconds since the epoch).
std::string AlarmDocument(const CameraKey& camera, const AlarmCall& alarm, int64_t nowMs);

// Binds each port to its protocol and stream, as PTZ lines.
std::string SerialPortDocument(const std::vector<LineBinding>& lines);

// The shortest decimal text that reads back as exactly `value` ("2", "2.5").
std::string FormatParm(double value);

}  // namespace vorna_host
