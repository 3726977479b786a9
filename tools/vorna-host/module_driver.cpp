#include "module_driver.h"

#include <dlfcn.h>

#include <cstring>

namespace vorna_host {

namespace {

template <typename Fn>
bool ResolveEntryPoint(void* library, const char* name, Fn& entryPoint, std::string& error) {
    entryPoint = reinterpret_cast<Fn>(dlsym(library, name));
    if (entryPoint != nullptr) return true;
    error = std::string("entry point ") + name + " not found";
    return false;
}

IoctlRequest MakeIoctl(uint32_t op, const std::string& text) {
    IoctlRequest request;
    std::memset(&request, 0, sizeof request);
    request.op = op;
    request.length = static_cast<uint32_t>(text.size());
    request.data = text.data();
    return request;
}

}  // namespace

std::unique_ptr<ModuleDriver> ModuleDriver::Open(const std::string& path, std::string& error) {
    void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        error = dlerror();
        return nullptr;
    }
    std::unique_ptr<ModuleDriver> driver(new ModuleDriver(library));
    if (!driver->Resolve(error)) return nullptr;
    return driver;
}

bool ModuleDriver::Resolve(std::string& error) {
    return ResolveEntryPoint(library_, "Load", load_, error) && ResolveEntryPoint(library_, "Open", open_, error) &&
           ResolveEntryPoint(library_, "Write", write_, error) && ResolveEntryPoint(library_, "IOCTL", ioctl_, error) &&
           ResolveEntryPoint(library_, "Close", close_, error) && ResolveEntryPoint(library_, "Unload", unload_, error);
}

ModuleDriver::~ModuleDriver() {
    Stop();
    dlclose(library_);
}

void ModuleDriver::Start(HostCallback callback) {
    HostInterface host;
    std::memset(&host, 0, sizeof host);
    host.callback = callback;
    ModuleRegistration registration;
    std::memset(&registration, 0, sizeof registration);
    load_(&host, &registration);
    open_();
    started_ = true;
    worker_ = std::thread([this] {
        IoctlRequest request = MakeIoctl(VORNA_IOCTL_RUN_WORKER, std::string());
        ioctl_(&request);
    });
}

void ModuleDriver::SendEvent(uint64_t type, const std::string& document) {
    HostEvent event;
    std::memset(&event, 0, sizeof event);
    event.size = sizeof event;
    event.version = 1;
    event.length = static_cast<int32_t>(document.size());
    event.data = document.data();
    event.type = type;
    event.flags = VORNA_FLAGS_EVENT;
    write_(&event);
}

void ModuleDriver::UpdateConfiguration(const std::string& text) {
    IoctlRequest request = MakeIoctl(VORNA_IOCTL_UPDATE_CONFIG, text);
    ioctl_(&request);
}

void ModuleDriver::Stop() {
    if (!started_) return;
    started_ = false;
    close_();
    worker_.join();
    unload_();
}

}  // namespace vorna_host
