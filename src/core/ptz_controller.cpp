#include "core/ptz_controller.h"

#include <algorithm>

#include "core/camera_tick.h"
#include "core/clock.h"

namespace vorna {

PtzCamera* PtzController::FindCamera(int devicesId, int deviceNumber, int inputNumber, bool remove) {
    for (auto it = cameras.begin(); it != cameras.end(); ++it) {
        PtzCamera& camera = **it;
        if (camera.devicesId != devicesId || camera.deviceNumber != deviceNumber ||
            camera.inputNumber != inputNumber)
            continue;
        if (!remove) return &camera;
        cameras.erase(it);
        return nullptr;
    }
    return nullptr;
}

namespace {

// Marks a worker as inside its loop for as long as it lives; on the way out,
// however it leaves, it tells a waiting Close.
class ActiveWorker {
public:
    ActiveWorker(std::mutex& lock, std::condition_variable& wake, int& count)
        : lock_(lock), wake_(wake), count_(count) {
        ++count_;
    }
    ~ActiveWorker() {
        std::lock_guard<std::mutex> guard(lock_);
        --count_;
        wake_.notify_all();
    }

private:
    std::mutex& lock_;
    std::condition_variable& wake_;
    int& count_;
};

}  // namespace

int PtzController::RunWorkerCycle() {
    std::unique_lock<std::mutex> entry(lock);
    if (!running) return 0;
    ActiveWorker active(lock, wake, activeWorkers_);
    entry.unlock();

    Clock& clock = CurrentClock();
    while (running) {
        if (!started) {
            clock.Sleep(kMaxWorkerWait);
            continue;
        }
        int64_t wait = kMaxWorkerWait;
        {
            std::lock_guard<std::mutex> guard(lock);
            int64_t now = clock.Now();
            for (auto& camera : cameras) {
                int64_t due = TimeUntilDue(*camera, now);
                if (due == 0) {
                    CameraTick(*camera, now);
                    now = clock.Now();
                    due = TimeUntilDue(*camera, now);
                }
                wait = std::min(wait, due);
            }
        }
        clock.Sleep(wait);
    }
    return 0;
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

int64_t TimeUntilDue(const PtzCamera& camera, int64_t now) {
    // A camera without protocol can do nothing until its line is bound; it
    // must not make the worker spin meanwhile.
    if (camera.protocol == nullptr) return kMaxWorkerWait;
    if (camera.lastCommandTime == kInvalidTime) return 0;
    const int64_t elapsed = now - camera.lastCommandTime;
    if (elapsed < 0) return 0;
    const int64_t interval = camera.protocol->GetCommandInterval();
    return interval <= elapsed ? 0 : interval - elapsed;
}

}  // namespace vorna
