#include "motion_watchdog.h"

#include "vorna/ptz.h"

namespace vorna_host {

namespace {

enum Axis : unsigned { kPan = 1, kTilt = 2, kZoom = 4, kIris = 8, kFocus = 16 };

struct AxisEffect {
    int opcode;
    unsigned axis;
    bool moves;
};

const AxisEffect kAxisEffects[] = {
    {VORNA_OP_PAN_LEFT, kPan, true},     {VORNA_OP_PAN_RIGHT, kPan, true},   {VORNA_OP_STOP_PAN, kPan, false},
    {VORNA_OP_TILT_UP, kTilt, true},     {VORNA_OP_TILT_DOWN, kTilt, true},  {VORNA_OP_STOP_TILT, kTilt, false},
    {VORNA_OP_ZOOM_IN, kZoom, true},     {VORNA_OP_ZOOM_OUT, kZoom, true},   {VORNA_OP_STOP_ZOOM, kZoom, false},
    {VORNA_OP_IRIS_OPEN, kIris, true},   {VORNA_OP_IRIS_CLOSE, kIris, true}, {VORNA_OP_STOP_IRIS, kIris, false},
    {VORNA_OP_FOCUS_NEAR, kFocus, true}, {VORNA_OP_FOCUS_FAR, kFocus, true}, {VORNA_OP_STOP_FOCUS, kFocus, false},
};

unsigned AfterCall(unsigned moving, const OpcodeCall& call) {
    for (const AxisEffect& effect : kAxisEffects)
        if (effect.opcode == call.opcode) return effect.moves ? moving | effect.axis : moving & ~effect.axis;
    return moving;
}

}  // namespace

void MotionWatchdog::Request(const CameraKey& camera, const std::vector<OpcodeCall>& calls, Clock::time_point now) {
    std::lock_guard<std::mutex> guard(mutex_);
    Watched& watched = cameras_[Key(camera.devicesId, camera.deviceNumber, camera.inputNumber)];
    watched.camera = camera;
    watched.lastRequest = now;
    watched.commanded = watched.commanded || !calls.empty();
    for (const OpcodeCall& call : calls) watched.movingAxes = AfterCall(watched.movingAxes, call);
}

std::vector<CameraKey> MotionWatchdog::Overdue(Clock::time_point now) {
    std::lock_guard<std::mutex> guard(mutex_);
    std::vector<CameraKey> overdue;
    for (auto& entry : cameras_) {
        Watched& watched = entry.second;
        if (watched.movingAxes == 0 || now - watched.lastRequest <= kPatience) continue;
        watched.movingAxes = 0;
        overdue.push_back(watched.camera);
    }
    return overdue;
}

std::vector<CameraKey> MotionWatchdog::Commanded() const {
    std::lock_guard<std::mutex> guard(mutex_);
    std::vector<CameraKey> commanded;
    for (const auto& entry : cameras_)
        if (entry.second.commanded) commanded.push_back(entry.second.camera);
    return commanded;
}

}  // namespace vorna_host
