// The module as a recorder drives it: dlopen, then Load, Open, the worker
// cycle (IOCTL op 1) on a thread of its own, events through Write,
// configuration through IOCTL op 2, and at the end Close, join, Unload.
#pragma once

#include <memory>
#include <string>
#include <thread>

#include "vorna/host_abi.h"

namespace vorna_host {

class ModuleDriver {
public:
    // Opens the library and finds the six entry points; null with the reason
    // in `error`. Nothing is called yet.
    static std::unique_ptr<ModuleDriver> Open(const std::string& path, std::string& error);
    ~ModuleDriver();

    // Load with `callback`, Open (the module reads VORNA.xml from the current
    // directory), then start the worker cycle.
    void Start(HostCallback callback);
    // Write with an event document of type VORNA_TYPE_EVENT or
    // VORNA_TYPE_ALARM_EVENT.
    void SendEvent(uint64_t type, const std::string& document);
    // IOCTL op 2.
    void UpdateConfiguration(const std::string& text);
    // Close, wait for the worker cycle to return, Unload. Idempotent.
    void Stop();

private:
    explicit ModuleDriver(void* library) : library_(library) {}
    bool Resolve(std::string& error);

    void* library_;
    VornaLoadFn load_ = nullptr;
    VornaOpenFn open_ = nullptr;
    VornaWriteFn write_ = nullptr;
    VornaIoctlFn ioctl_ = nullptr;
    VornaCloseFn close_ = nullptr;
    VornaUnloadFn unload_ = nullptr;
    std::thread worker_;
    bool started_ = false;
};

}  // namespace vorna_host
