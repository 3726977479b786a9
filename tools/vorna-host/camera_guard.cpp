#include "camera_guard.h"

#include "protocol_limits.h"

namespace vorna_host {

std::string CameraName(const CameraKey& camera) {
    return std::to_string(camera.devicesId) + " " + std::to_string(camera.deviceNumber) + " " +
           std::to_string(camera.inputNumber);
}

std::string CameraGuard::CheckSelection(const CameraKey& camera) const {
    const CameraTable table = table_.Get();
    const TableCamera* found = table.Find(camera);
    if (found == nullptr) return "no camera " + CameraName(camera) + " in the camera table (see 'list')";
    const ProtocolLimits* limits = table.Limits(found->protocol);
    if (limits == nullptr) return std::string();
    const std::string error = CheckAddress(found->address, found->protocol, *limits);
    return error.empty() ? error : "camera " + CameraName(camera) + ": " + error;
}

std::string CameraGuard::CheckCalls(const CameraKey& camera, const std::vector<OpcodeCall>& calls) const {
    const CameraTable table = table_.Get();
    const TableCamera* found = table.Find(camera);
    const ProtocolLimits* limits = found ? table.Limits(found->protocol) : nullptr;
    if (limits == nullptr) return vorna_host::CheckCalls(calls, std::string(), ProtocolLimits());
    return vorna_host::CheckCalls(calls, found->protocol, *limits);
}

std::string CameraGuard::SurprisingEffect(const CameraKey& camera, const std::vector<OpcodeCall>& calls) const {
    const CameraTable table = table_.Get();
    const TableCamera* found = table.Find(camera);
    return found ? vorna_host::SurprisingEffect(calls, found->protocol) : std::string();
}

std::string CameraGuard::WhyNothingWasSent(const CameraKey& camera) const {
    const CameraTable table = table_.Get();
    const TableCamera* found = table.Find(camera);
    if (found == nullptr) return "nothing sent: camera " + CameraName(camera) + " is not in the camera table";
    if (found->protocol.empty())
        return "nothing sent: camera " + CameraName(camera) + " is on port " + found->port +
               ", which no --line binds to a protocol";
    return "nothing sent: " + found->protocol + " has no frame for this command";
}

}  // namespace vorna_host
