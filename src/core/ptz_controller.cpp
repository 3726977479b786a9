#include "core/ptz_controller.h"

#include <algorithm>

#include <chrono>

#include "env/environment.h"

namespace vorna {

PtzCamera* PtzController::FindCamera(int devicesId, int deviceNumber, int inputNumber, bool remove) {
    const CameraKey key{devicesId, deviceNumber, inputNumber};
    if (!remove) return cameras.Find(key);
    cameras.Remove(key);
    return nullptr;
}

namespace {

// The moment on the monotonic clock at which the module's clock reaches the
// start of millisecond `ms`. The worker sleeps until then rather than for a
// number of milliseconds: it wakes when a camera is due, not up to a
// millisecond after, and a wall clock set back or forward meanwhile neither
// stretches nor cuts the sleep.
std::chrono::steady_clock::time_point MonotonicTimeOf(int64_t ms) {
    const auto monotonicNow = std::chrono::steady_clock::now();
    return monotonicNow + std::chrono::microseconds(ms * 1000 - NowUs());
}

// Counts a worker as inside its loop for as long as it lives; on the way
// out, however it leaves, it tells a waiting Close. Lives under the lock.
class ActiveWorker {
public:
    ActiveWorker(std::condition_variable& wake, int& count) : wake_(wake), count_(count) { ++count_; }
    ~ActiveWorker() {
        --count_;
        wake_.notify_all();
    }

private:
    std::condition_variable& wake_;
    int& count_;
};

}  // namespace

int PtzController::RunWorkerCycle() {
    std::unique_lock<std::mutex> guard(lock);
    if (!running) return 0;
    ActiveWorker active(wake, activeWorkers_);
    while (running) {
        const uint64_t seen = changes_;
        int64_t now = NowMs();
        const int64_t dueAt = started ? StepDueCamerasFrom(now) : now + kMaxWorkerWait;
        wake.wait_until(guard, MonotonicTimeOf(dueAt), [&] { return !running || changes_ != seen; });
    }
    return 0;
}

int64_t PtzController::StepDueCameras() {
    int64_t now = NowMs();
    const int64_t dueAt = StepDueCamerasFrom(now);
    return std::max<int64_t>(0, dueAt - now);
}

int64_t PtzController::StepDueCamerasFrom(int64_t& now) {
    int64_t dueAt = now + kMaxWorkerWait;
    for (auto& camera : cameras) {
        int64_t due = TimeUntilDue(*camera, now);
        if (due == 0) {
            CameraTick(*camera, now);
            now = NowMs();
            due = TimeUntilDue(*camera, now);
        }
        dueAt = std::min(dueAt, now + due);
    }
    return dueAt;
}

void PtzController::CamerasChanged() {
    ++changes_;
    wake.notify_all();
}

int PtzController::StopAxes() {
    {
        std::unique_lock<std::mutex> guard(lock);
        running = false;
        wake.wait(guard, [this] { return activeWorkers_ == 0; });
        // A command that arrives after Close must find no protocol rather
        // than a destroyed one.
        for (auto& camera : cameras) camera->protocol = nullptr;
        for (auto& entry : protocols) entry.second.reset();
        protocols.clear();
    }
    return 0;
}

}  // namespace vorna
