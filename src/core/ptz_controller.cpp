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
        const int64_t wait = started ? StepDueCameras() : kMaxWorkerWait;
        wake.wait_for(guard, std::chrono::milliseconds(wait), [&] { return !running || changes_ != seen; });
    }
    return 0;
}

int64_t PtzController::StepDueCameras() {
    int64_t wait = kMaxWorkerWait;
    int64_t now = NowMs();
    for (auto& camera : cameras) {
        int64_t due = TimeUntilDue(*camera, now);
        if (due == 0) {
            CameraTick(*camera, now);
            now = NowMs();
            due = TimeUntilDue(*camera, now);
        }
        wait = std::min(wait, due);
    }
    return wait;
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
