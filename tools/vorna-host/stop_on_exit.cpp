#include "stop_on_exit.h"

#include <signal.h>

#include <string>

#include "vorna/host_abi.h"

namespace vorna_host {

namespace {

const std::vector<OpcodeCall> kStopEveryAxis = {{32, 0}, {54, 0}, {31, 0}, {62, 0}, {63, 0}};

}  // namespace

const std::vector<OpcodeCall>& StopEveryAxis() { return kStopEveryAxis; }

namespace {

// Stopping can wait on a stalled line for a while; an operator who presses
// Ctrl-C again wants out now, and the default action of SIGINT does that.
void LetInterruptEndAtOnce() {
    signal(SIGINT, SIG_DFL);
    sigset_t interrupt;
    sigemptyset(&interrupt);
    sigaddset(&interrupt, SIGINT);
    pthread_sigmask(SIG_UNBLOCK, &interrupt, nullptr);
}

}  // namespace

void StopCameras(ModuleDriver& module, const std::vector<CameraKey>& cameras, FILE* report) {
    LetInterruptEndAtOnce();
    if (cameras.empty()) return;
    std::fprintf(report, "vorna-host: stopping pan, tilt, zoom, iris and focus of %zu camera%s before closing\n",
                 cameras.size(), cameras.size() == 1 ? "" : "s");
    std::fflush(report);
    for (const CameraKey& camera : cameras) module.SendEvent(VORNA_TYPE_EVENT, EventDocument(camera, kStopEveryAxis));
}

}  // namespace vorna_host
