// The module's one long-lived object: protocol objects, camera table, serial
// lines, the lock that serialises all camera work, and the worker cycle.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "core/camera_table.h"
#include "core/camera_tick.h"
#include "core/ptz_camera.h"
#include "protocols/protocol_table.h"

namespace vorna {

// What the host's serial-port document says about one port.
struct SerialLine {
    std::string protocolName;
    uint64_t stream = 0;
};

class PtzController {
public:
    PtzController() = default;
    PtzController(const PtzController&) = delete;
    PtzController& operator=(const PtzController&) = delete;

    // The first camera with these three keys, in table order, or null. With
    // `remove` the camera found is destroyed and null is returned. Takes the
    // same time at any table size. Callers hold `lock`.
    PtzCamera* FindCamera(int devicesId, int deviceNumber, int inputNumber, bool remove);

    // The body of IOCTL op 1: steps every due camera until Close; returns 0.
    int RunWorkerCycle();

    // One pass of the worker, with `lock` held: steps every camera that is
    // due and returns how long the worker may sleep, from the pass's last
    // reading of the clock.
    int64_t StepDueCameras();

    // Tells a sleeping worker that camera state changed from outside (a
    // command, an alarm, a configuration change), so that it works out its
    // wait again at once. Callers hold `lock`.
    void CamerasChanged();

    // The body of Close: stops the worker cycle, waits for it to leave its
    // loop (only if one is inside it), then destroys the protocol objects and
    // unlinks every camera from them. Returns 0.
    int StopAxes();

    ProtocolTable protocols;
    CameraTable cameras;
    std::map<std::string, SerialLine> serialLines;
    std::mutex lock;
    std::condition_variable wake;
    std::atomic<bool> running{true};
    std::atomic<bool> started{false};

private:
    // StepDueCameras from the clock reading `now`, which it moves on with
    // each reading it takes; returns the millisecond at which the next camera
    // is due.
    int64_t StepDueCamerasFrom(int64_t& now);

    // Worker cycles inside their loop; guarded by `lock`.
    int activeWorkers_ = 0;
    // Counts outside changes; guarded by `lock`.
    uint64_t changes_ = 0;
};

}  // namespace vorna
