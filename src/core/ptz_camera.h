// The run-time record of one configured camera.
#pragma once

#include <climits>
#include <cstdint>
#include <deque>
#include <map>
#include <string>

#include "env/clock.h"
#include "protocols/protocol.h"

namespace vorna {

// An alarm-driven command waiting in a camera's queue: open-ended until the
// alarm's end event gives it an end time.
struct QueuedCommand {
    uint32_t action = 0;
    int opcode = 0;
    double parm = 0.0;
    int64_t endTime = kInvalidTime;
    int sendCount = 0;
};

struct PtzCamera {
    CProtocol* protocol = nullptr;   // the shared object of the camera's line; not owned
    uint32_t address = 1;
    int devicesId = 0;
    int deviceNumber = 0;
    int inputNumber = 0;
    int panSpeed = 31;
    int tiltSpeed = 31;
    int zoomSpeed = 1;
    int panMotion = 0;               // signed speed sent last; 0 = not panning
    int tiltMotion = 0;
    int zoomMotion = 0;
    std::string serialPort;
    uint64_t stream = 0;             // 0 = the line is unknown, nothing can be sent
    int tourDwell = 10;              // seconds between tour steps and alarm bursts
    bool tourEnabled = false;
    int tourPosition = INT_MIN;      // no position yet: the first step takes the smallest
    std::map<int, int> tour;         // tour position -> preset number
    int64_t tourStepTime = kInvalidTime;
    std::map<int, std::string> presets;
    int tourIdle = 60;               // seconds of operator silence before motions stop
    int64_t activityTime = kInvalidTime;
    int64_t lastCommandTime = 0;     // deliberately 0, not invalid: a new camera is due at once
    int focusMotion = 0;
    int irisMotion = 0;
    Bytes repeatBytes;
    bool menuMode = false;
    std::deque<QueuedCommand> commandQueue;
};

}  // namespace vorna
