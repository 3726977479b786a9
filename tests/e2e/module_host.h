// A test host: loads the built libvorna.so with dlopen and drives it through
// the public header only, as a recorder does. Every message the module sends
// is recorded (record and payload copied while the callback runs).
#pragma once

#include <dlfcn.h>

#include <cstring>
#include <mutex>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/temp_dir.h"
#include "vorna/host_abi.h"

namespace vorna_test {

struct SentMessage {
    HostMessage record;
    std::string payload;
};

class ModuleHost {
public:
    ModuleHost() {
        handle_ = dlopen(VORNA_LIBRARY_PATH, RTLD_NOW | RTLD_LOCAL);
        if (handle_ == nullptr) throw std::runtime_error(dlerror());
        load = Resolve<VornaLoadFn>("Load");
        open = Resolve<VornaOpenFn>("Open");
        write = Resolve<VornaWriteFn>("Write");
        ioctl = Resolve<VornaIoctlFn>("IOCTL");
        close = Resolve<VornaCloseFn>("Close");
        unload = Resolve<VornaUnloadFn>("Unload");
        Instance() = this;
    }

    ~ModuleHost() {
        Instance() = nullptr;
        dlclose(handle_);
    }

    static int Callback(HostMessage* message, int) {
        ModuleHost* host = Instance();
        std::lock_guard<std::mutex> guard(host->mutex_);
        host->sent_.push_back({*message, std::string(static_cast<const char*>(message->data), message->length)});
        return 0;
    }

    // Load with a registration record pre-filled with 0xAB.
    void Load() {
        std::memset(&registration, 0xAB, sizeof registration);
        HostInterface host{};
        host.callback = &ModuleHost::Callback;
        load(&host, &registration);
    }

    int Event(uint64_t type, uint64_t flags, const std::string& text) {
        HostEvent event{};
        event.size = sizeof event;
        event.version = 1;
        event.length = static_cast<int32_t>(text.size());
        event.data = text.data();
        event.type = type;
        event.flags = flags;
        return write(&event);
    }

    int Ioctl(uint32_t op, const std::string& text = std::string()) {
        IoctlRequest request{};
        request.op = op;
        request.length = static_cast<uint32_t>(text.size());
        request.data = text.data();
        return ioctl(&request);
    }

    std::vector<SentMessage> Sent() {
        std::lock_guard<std::mutex> guard(mutex_);
        return sent_;
    }

    VornaLoadFn load;
    VornaOpenFn open;
    VornaWriteFn write;
    VornaIoctlFn ioctl;
    VornaCloseFn close;
    VornaUnloadFn unload;
    ModuleRegistration registration;

private:
    template <typename Fn>
    Fn Resolve(const char* name) {
        void* symbol = dlsym(handle_, name);
        if (symbol == nullptr) throw std::runtime_error(std::string("missing entry point ") + name);
        return reinterpret_cast<Fn>(symbol);
    }

    static ModuleHost*& Instance() {
        static ModuleHost* instance = nullptr;
        return instance;
    }

    void* handle_ = nullptr;
    std::mutex mutex_;
    std::vector<SentMessage> sent_;
};

// Runs a test in a fresh temporary working directory (where "VORNA.xml" lives)
// and goes back afterwards.
class ScopedWorkDir : public TempDir {
public:
    ScopedWorkDir() : previous_(std::filesystem::current_path()) { std::filesystem::current_path(path); }
    ~ScopedWorkDir() {
        std::error_code ignored;
        std::filesystem::current_path(previous_, ignored);
    }

private:
    std::filesystem::path previous_;
};

}  // namespace vorna_test
