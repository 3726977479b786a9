#include "core/camera_tick.h"

#include <algorithm>
#include <limits>

#include "core/command_executor.h"

namespace vorna {

namespace {

constexpr int64_t kMillisecondsPerSecond = 1000;
constexpr int64_t kNever = std::numeric_limits<int64_t>::max();

// When the operator counts as gone: idle return and the tour take over.
int64_t IdleFrom(const PtzCamera& camera) {
    return camera.activityTime + camera.tourIdle * kMillisecondsPerSecond;
}

bool OperatorIdle(const PtzCamera& camera, int64_t now) {
    return now >= IdleFrom(camera);
}

bool RepeatsKeptCommand(const PtzCamera& camera, int64_t now) {
    return camera.protocol->ShouldRepeat(now, now - camera.activityTime);
}

bool AnyMotionRunning(const PtzCamera& camera) {
    return camera.panMotion != 0 || camera.tiltMotion != 0 || camera.zoomMotion != 0 ||
           camera.focusMotion != 0 || camera.irisMotion != 0;
}

// Stops every motion still running, in a fixed order; each stop clears its
// motion field, so a motion is stopped once.
void StopRunningMotions(PtzCamera& camera) {
    if (camera.panMotion != 0) ExecuteCommand(camera, VORNA_OP_STOP_PAN, 0.0);
    if (camera.tiltMotion != 0) ExecuteCommand(camera, VORNA_OP_STOP_TILT, 0.0);
    if (camera.zoomMotion != 0) ExecuteCommand(camera, VORNA_OP_STOP_ZOOM, 0.0);
    if (camera.focusMotion != 0) ExecuteCommand(camera, VORNA_OP_STOP_FOCUS, 0.0);
    if (camera.irisMotion != 0) ExecuteCommand(camera, VORNA_OP_STOP_IRIS, 0.0);
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
    ExecuteCommand(camera, VORNA_OP_GO_TO_PRESET, static_cast<double>(camera.tour.at(camera.tourPosition)));
}

}  // namespace

void CameraTick(PtzCamera& camera, int64_t now) {
    if (camera.activityTime != kInvalidTime) {
        if (camera.tourEnabled && OperatorIdle(camera, now)) {
            StopRunningMotions(camera);
        } else if (camera.protocol != nullptr) {
            if (RepeatsKeptCommand(camera, now)) ExecuteCommand(camera, kOpRepeat, 0.0);
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

namespace {

// The earliest moment from `from` on at which the alarm phase or the tour
// would act, for a camera that has a protocol and whose manual phase lets
// the step go on.
int64_t AlarmOrTourFrom(const PtzCamera& camera, int64_t from) {
    if (!camera.commandQueue.empty()) {
        int64_t firstExpiry = kNever;  // an entry is dropped the millisecond after its end time
        for (const QueuedCommand& entry : camera.commandQueue)
            if (entry.endTime != kInvalidTime) firstExpiry = std::min(firstExpiry, entry.endTime + 1);
        if (firstExpiry <= from) return from;
        const QueuedCommand& newest = camera.commandQueue.back();
        const int burst = camera.protocol->GetRepeatCount(newest.opcode);
        if (burst == 0 || newest.sendCount < burst) return from;
        const int64_t nextBurst = camera.lastCommandTime + camera.tourDwell * kMillisecondsPerSecond;
        return std::min(firstExpiry, std::max(from, nextBurst));
    }
    if (!camera.tourEnabled || camera.tour.empty()) return kNever;
    if (camera.tourStepTime == kInvalidTime) return from;
    return std::max(from, camera.tourStepTime + camera.tourDwell * kMillisecondsPerSecond);
}

// The earliest moment from `from` on at which CameraTick would act, phase by
// phase as the step itself goes.
int64_t FirstActionFrom(const PtzCamera& camera, int64_t from) {
    if (camera.activityTime != kInvalidTime) {
        if (camera.tourEnabled) {
            // Before the operator counts as gone, the step can only repeat.
            const int64_t idleFrom = IdleFrom(camera);
            if (from < idleFrom && RepeatsKeptCommand(camera, from)) return from;
            from = std::max(from, idleFrom);
            if (AnyMotionRunning(camera)) return from;
        } else if (RepeatsKeptCommand(camera, from)) {
            return from;
        }
    }
    return AlarmOrTourFrom(camera, from);
}

}  // namespace

int64_t TimeUntilDue(const PtzCamera& camera, int64_t now) {
    // A camera without protocol can do nothing until its line is bound; it
    // must not make the worker spin meanwhile.
    if (camera.protocol == nullptr) return kMaxWorkerWait;
    // No step before one protocol interval has passed since the last command
    // (a last command in the future means the clock was set back: due now).
    int64_t gate = now;
    if (camera.lastCommandTime != kInvalidTime && camera.lastCommandTime <= now)
        gate = std::max(now, camera.lastCommandTime + camera.protocol->GetCommandInterval());
    const int64_t due = FirstActionFrom(camera, gate);
    return due == kNever ? kMaxWorkerWait : std::min(due - now, kMaxWorkerWait);
}

}  // namespace vorna
