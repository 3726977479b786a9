// The six entry points the host calls. No exception crosses this boundary:
// each entry point catches everything, reports it on standard error and
// returns 0. Calls without a controller (before Load, after Unload) do nothing.
#include <exception>
#include <memory>

#include "config/config_service.h"
#include "core/event_intake.h"
#include "core/ptz_controller.h"
#include "host/announcement.h"
#include "host/host_sender.h"
#include "vorna/host_abi.h"

namespace vorna {

PtzController* g_controller = nullptr;

namespace {

template <typename Body>
int Guarded(const char* entryPoint, Body body) {
    try {
        body();
    } catch (const std::exception& error) {
        LogError(std::string(entryPoint) + ": " + error.what());
    } catch (...) {
        LogError(std::string(entryPoint) + ": unknown exception");
    }
    return 0;
}

// Accepts types 4 and 8 only, and only with both flag bits of 0x1000010.
bool IsAcceptedEvent(const HostEvent& incoming) {
    return ((incoming.type - VORNA_TYPE_ALARM_EVENT) & ~uint64_t{VORNA_TYPE_ALARM_EVENT}) == 0 &&
           (incoming.flags & VORNA_FLAGS_EVENT) == VORNA_FLAGS_EVENT;
}

}  // namespace

}  // namespace vorna

using namespace vorna;

#define VORNA_EXPORT extern "C" __attribute__((visibility("default")))

VORNA_EXPORT int Load(HostInterface* host, ModuleRegistration* registration) {
    return Guarded("Load", [&] {
        if (host == nullptr || registration == nullptr) {
            LogError("Load: the host record and the registration record are required");
            return;
        }
        g_hostCallback = host->callback;
        auto controller = std::make_unique<PtzController>();
        registration->moduleId = VORNA_MODULE_ID;
        registration->firstMask = VORNA_FLAGS_ANNOUNCEMENT;
        registration->secondMask = VORNA_FLAGS_ANNOUNCEMENT;
        registration->firstFlag = 1;
        registration->secondFlag = 1;
        // A second Load replaces the controller without destroying the first:
        // a worker cycle may still be running on it.
        g_controller = controller.release();
    });
}

VORNA_EXPORT int Open(void) {
    return Guarded("Open", [] {
        if (g_controller == nullptr) return;
        AnnounceModule();
        Start(*g_controller);
    });
}

VORNA_EXPORT int Write(HostEvent* incoming) {
    return Guarded("Write", [&] {
        if (g_controller == nullptr || incoming == nullptr || !IsAcceptedEvent(*incoming)) return;
        if (incoming->data == nullptr || incoming->length <= 0) return;
        HandleEvent(*g_controller, static_cast<const char*>(incoming->data), incoming->length,
                    incoming->type == VORNA_TYPE_ALARM_EVENT);
    });
}

VORNA_EXPORT int IOCTL(IoctlRequest* request) {
    return Guarded("IOCTL", [&] {
        if (g_controller == nullptr || request == nullptr) return;
        switch (request->op) {
            case VORNA_IOCTL_RUN_WORKER:
                g_controller->RunWorkerCycle();
                break;
            case VORNA_IOCTL_UPDATE_CONFIG:
                if (request->data == nullptr) return;
                Update(*g_controller, static_cast<const char*>(request->data), request->length);
                break;
            default:
                break;
        }
    });
}

VORNA_EXPORT int Close(void) {
    return Guarded("Close", [] {
        if (g_controller != nullptr) g_controller->StopAxes();
    });
}

VORNA_EXPORT int Unload(void) {
    return Guarded("Unload", [] {
        delete g_controller;
        g_controller = nullptr;
    });
}
