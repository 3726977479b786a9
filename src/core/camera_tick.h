// The periodic step of one camera, and when it is next worth taking.
#pragma once

#include <cstdint>

#include "core/ptz_camera.h"

namespace vorna {

// Longest nap of the worker, and the interval of a camera that cannot act.
constexpr int64_t kMaxWorkerWait = 250;

// The periodic step of one camera: repeat, idle return, alarm commands and
// the preset tour. Called by the worker cycle with the controller's lock held.
void CameraTick(PtzCamera& camera, int64_t now);

// Milliseconds until the first moment at which CameraTick would send
// something or change the camera's state; 0 means due now. Never earlier than
// one protocol interval after the camera's last command, never more than
// kMaxWorkerWait, so that the worker sleeps through idle time and still takes
// every step at the millisecond a continuously stepping worker would.
int64_t TimeUntilDue(const PtzCamera& camera, int64_t now);

}  // namespace vorna
