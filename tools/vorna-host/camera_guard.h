// Checks a command against the selected camera before anything is sent: the
// camera must be in the module's table, its numbers within what its
// protocol's frames carry; and says why nothing went out when nothing did.
#pragma once

#include <string>
#include <vector>

#include "camera_table.h"
#include "documents.h"

namespace vorna_host {

class CameraGuard {
public:
    explicit CameraGuard(const LatestCameraTable& table) : table_(table) {}

    // Why `camera` cannot be selected, or empty.
    std::string CheckSelection(const CameraKey& camera) const;
    // Why `calls` cannot go to `camera`, the allowed range named, or empty.
    std::string CheckCalls(const CameraKey& camera, const std::vector<OpcodeCall>& calls) const;
    // What `calls` really do on `camera`'s protocol when that surprises, or empty.
    std::string SurprisingEffect(const CameraKey& camera, const std::vector<OpcodeCall>& calls) const;
    // Why the module sent nothing for a command to `camera`.
    std::string WhyNothingWasSent(const CameraKey& camera) const;

private:
    const LatestCameraTable& table_;
};

// "1 1 1": a camera's three numbers as the 'camera' command takes them.
std::string CameraName(const CameraKey& camera);

}  // namespace vorna_host
