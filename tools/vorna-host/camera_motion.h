// What the host last told each camera to do: which cameras it sent commands
// to (they are stopped when the host ends) and the motion of each as last
// commanded, for 'status'.
#pragma once

#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "documents.h"

namespace vorna_host {

class CameraMotion {
public:
    // Takes the commands in the order they were sent to `camera`.
    void Note(const CameraKey& camera, const std::vector<OpcodeCall>& calls);

    // Every camera a command went to, in key order.
    std::vector<CameraKey> CommandedCameras() const;

    // "pan left at speed 31, tilt still, zoom in at speed 1, iris still, focus still".
    std::string Describe(const CameraKey& camera) const;

private:
    struct Axes {
        int pan = 0, tilt = 0, zoom = 0, iris = 0, focus = 0;  // -1, 0 or +1
        int panSpeed = 31, tiltSpeed = 31, zoomSpeed = 1;      // the module's settings for a new camera
    };
    using Key = std::tuple<int, int, int>;

    static Key KeyOf(const CameraKey& camera);
    static void Apply(Axes& axes, const OpcodeCall& call);

    std::map<Key, Axes> cameras_;
};

}  // namespace vorna_host
