// The reference worker: steps a camera on every millisecond at which it is
// due, on the fake clock. What a worker that never sleeps would send.
#pragma once

#include "core/camera_tick.h"
#include "core/ptz_controller.h"
#include "support/fake_clock.h"

namespace vorna_test {

inline void StepEveryMillisecond(vorna::PtzCamera& camera, FakeClock& clock, int64_t until) {
    for (; clock.now <= until; ++clock.now)
        if (vorna::TimeUntilDue(camera, clock.now) == 0) vorna::CameraTick(camera, clock.now);
}

}  // namespace vorna_test
