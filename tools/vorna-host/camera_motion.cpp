#include "camera_motion.h"

namespace vorna_host {

namespace {

// An axis that moves (-1 or +1) or stands (0), as 'status' names it.
std::string DescribeAxis(const char* axis, int direction, const char* negative, const char* positive, int speed) {
    if (direction == 0) return std::string(axis) + " still";
    std::string text = std::string(axis) + " " + (direction < 0 ? negative : positive);
    if (speed >= 0) text += " at speed " + std::to_string(speed);
    return text;
}

}  // namespace

CameraMotion::Key CameraMotion::KeyOf(const CameraKey& camera) {
    return Key(camera.devicesId, camera.deviceNumber, camera.inputNumber);
}

void CameraMotion::Apply(Axes& axes, const OpcodeCall& call) {
    const int setting = static_cast<int>(call.parm);
    switch (call.opcode) {
        case 33: axes.pan = -1; break;
        case 34: axes.pan = 1; break;
        case 32: axes.pan = 0; break;
        case 52: axes.tilt = -1; break;
        case 53: axes.tilt = 1; break;
        case 54: axes.tilt = 0; break;
        case 17: axes.zoom = 1; break;
        case 18: axes.zoom = -1; break;
        case 31: axes.zoom = 0; break;
        case 10: axes.iris = 1; break;
        case 11: axes.iris = -1; break;
        case 62: axes.iris = 0; break;
        case 12: axes.focus = 1; break;
        case 13: axes.focus = -1; break;
        case 63: axes.focus = 0; break;
        case 39: axes.panSpeed = setting; break;
        case 46: axes.tiltSpeed = setting; break;
        case 30: axes.zoomSpeed = setting; break;
        default: break;
    }
}

void CameraMotion::Note(const CameraKey& camera, const std::vector<OpcodeCall>& calls) {
    Axes& axes = cameras_[KeyOf(camera)];
    for (const OpcodeCall& call : calls) Apply(axes, call);
}

std::vector<CameraKey> CameraMotion::CommandedCameras() const {
    std::vector<CameraKey> cameras;
    for (const auto& entry : cameras_)
        cameras.push_back(CameraKey{std::get<0>(entry.first), std::get<1>(entry.first), std::get<2>(entry.first)});
    return cameras;
}

std::string CameraMotion::Describe(const CameraKey& camera) const {
    const auto found = cameras_.find(KeyOf(camera));
    const Axes axes = found == cameras_.end() ? Axes() : found->second;
    return DescribeAxis("pan", axes.pan, "left", "right", axes.panSpeed) + ", " +
           DescribeAxis("tilt", axes.tilt, "down", "up", axes.tiltSpeed) + ", " +
           DescribeAxis("zoom", axes.zoom, "out", "in", axes.zoomSpeed) + ", " +
           DescribeAxis("iris", axes.iris, "closing", "opening", -1) + ", " +
           DescribeAxis("focus", axes.focus, "far", "near", -1);
}

}  // namespace vorna_host
