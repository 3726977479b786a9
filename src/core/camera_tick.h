#pragma once

#include <cstdint>

#include "core/ptz_camera.h"

namespace vorna {

// The periodic step of one camera: repeat, idle return, alarm commands and
// the preset tour. Called by the worker cycle with the controller's lock held.
void CameraTick(PtzCamera& camera, int64_t now);

}  // namespace vorna
