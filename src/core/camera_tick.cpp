#include "core/camera_tick.h"

#include "core/command_executor.h"

namespace vorna {

namespace {

constexpr int64_t kMillisecondsPerSecond = 1000;

bool OperatorIdle(const PtzCamera& camera, int64_t now) {
    return now - camera.activityTime >= camera.tourIdle * kMillisecondsPerSecond;
}

// Stops every motion still running, in a fixed order; each stop clears its
// motion field, so a motion is stopped once.
void StopRunningMotions(PtzCamera& camera) {
    if (camera.panMotion != 0) ExecuteCommand(camera, kOpStopPan, 0.0);
    if (camera.tiltMotion != 0) ExecuteCommand(camera, kOpStopTilt, 0.0);
    if (camera.zoomMotion != 0) ExecuteCommand(camera, kOpStopZoom, 0.0);
    if (camera.focusMotion != 0) ExecuteCommand(camera, kOpStopFocus, 0.0);
    if (camera.irisMotion != 0) ExecuteCommand(camera, kOpStopIris, 0.0);
}

void DropExpiredAlarms(PtzCamera& camera, int64_t now) {
    auto& queue = camera.commandQueue;
    for (auto it = queue.begin(); it != queue.end();) {
        if (it->endTime != kInvalidTime && it->endTime < now)
            it = queue.erase(it);
        else
            ++it;
    }
}

// Only the newest alarm command is carried out: k sends per burst (or one on
// every step when the protocol asks for no count), bursts `tourDwell` apart
// measured from the camera's last command.
void RunNewestAlarm(PtzCamera& camera, int64_t now) {
    QueuedCommand& entry = camera.commandQueue.back();
    const int burst = camera.protocol->GetRepeatCount(entry.opcode);
    if (burst == 0) {
        ExecuteCommand(camera, entry.opcode, entry.parm);
    } else if (entry.sendCount < burst) {
        ExecuteCommand(camera, entry.opcode, entry.parm);
        ++entry.sendCount;
    } else if (now - camera.lastCommandTime >= camera.tourDwell * kMillisecondsPerSecond) {
        entry.sendCount = 0;
    }
}

// The position after the current one, wrapping around; the smallest when the
// camera stands on no position (none yet, or its position was deleted).
int NextTourPosition(const PtzCamera& camera) {
    auto current = camera.tour.find(camera.tourPosition);
    if (current == camera.tour.end()) return camera.tour.begin()->first;
    auto next = std::next(current);
    return next == camera.tour.end() ? camera.tour.begin()->first : next->first;
}

void AdvanceTour(PtzCamera& camera, int64_t now) {
    if (!camera.tourEnabled) return;
    if (camera.tourStepTime != kInvalidTime && now - camera.tourStepTime < camera.tourDwell * kMillisecondsPerSecond)
        return;
    if (camera.tour.empty()) return;
    camera.tourPosition = NextTourPosition(camera);
    camera.tourStepTime = now;
    ExecuteCommand(camera, kOpGoToPreset, static_cast<double>(camera.tour.at(camera.tourPosition)));
}

}  // namespace

void CameraTick(PtzCamera& camera, int64_t now) {
    if (camera.activityTime != kInvalidTime) {
        if (camera.tourEnabled && OperatorIdle(camera, now)) {
            StopRunningMotions(camera);
        } else if (camera.protocol != nullptr) {
            if (camera.protocol->ShouldRepeat(now, now - camera.activityTime))
                ExecuteCommand(camera, kOpRepeat, 0.0);
            // The tour waits while the operator is active.
            if (camera.tourEnabled) return;
        }
    }

    if (!camera.commandQueue.empty()) {
        // Without a protocol the queue is left as it is until the line is bound.
        if (camera.protocol == nullptr) return;
        DropExpiredAlarms(camera, now);
        if (!camera.commandQueue.empty()) {
            RunNewestAlarm(camera, now);
            return;
        }
    }

    AdvanceTour(camera, now);
}

}  // namespace vorna
