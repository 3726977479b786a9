// Two ways of driving cameras on the fake clock, millisecond by millisecond:
// the reference, which steps every camera whenever its protocol interval has
// passed (a worker that never sleeps), and the real worker pass, which sleeps
// as long as the cameras' time until due allows and is woken by outside
// changes. Both must send the same frames at the same milliseconds.
#pragma once

#include <functional>
#include <vector>

#include "core/camera_tick.h"
#include "core/ptz_controller.h"
#include "support/fake_clock.h"

namespace vorna_test {

// An outside change (a command, an alarm, a configuration change) at a time
// relative to the start of the run.
struct TimedChange {
    int64_t at;
    std::function<void(vorna::PtzController&)> apply;
};

// The interval gate alone: due when the last command is at least one
// interval old, never commanded, or in the future.
inline bool IntervalPassed(const vorna::PtzCamera& camera, int64_t now) {
    if (camera.lastCommandTime == vorna::kInvalidTime) return true;
    const int64_t elapsed = now - camera.lastCommandTime;
    return elapsed < 0 || elapsed >= camera.protocol->GetCommandInterval();
}

// Applies the changes due at this millisecond; true when there were any.
inline bool ApplyChanges(vorna::PtzController& controller, const std::vector<TimedChange>& changes,
                         int64_t elapsed) {
    bool any = false;
    for (const TimedChange& change : changes)
        if (change.at == elapsed) {
            change.apply(controller);
            any = true;
        }
    return any;
}

inline void StepEveryMillisecond(vorna::PtzController& controller, FakeClock& clock,
                                 const std::vector<TimedChange>& changes, int64_t duration) {
    const int64_t start = clock.now;
    for (; clock.now <= start + duration; ++clock.now) {
        ApplyChanges(controller, changes, clock.now - start);
        for (auto& camera : controller.cameras)
            if (camera->protocol != nullptr && IntervalPassed(*camera, clock.now))
                vorna::CameraTick(*camera, clock.now);
    }
}

// A pass takes the millisecond it runs in, so a wait of 0 means the next one.
inline void RunWorkerPasses(vorna::PtzController& controller, FakeClock& clock,
                            const std::vector<TimedChange>& changes, int64_t duration) {
    const int64_t start = clock.now;
    int64_t nextPass = start;
    for (; clock.now <= start + duration; ++clock.now) {
        const bool woken = ApplyChanges(controller, changes, clock.now - start);
        if (woken || clock.now >= nextPass) nextPass = clock.now + std::max<int64_t>(1, controller.StepDueCameras());
    }
}

}  // namespace vorna_test
