#include "env/environment.h"

#include <atomic>
#include <chrono>

namespace vorna {

namespace {

class SystemClock : public Clock {
public:
    int64_t Now() override {
        using namespace std::chrono;
        return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
    }
    int64_t NowMicroseconds() override {
        using namespace std::chrono;
        return duration_cast<microseconds>(system_clock::now().time_since_epoch()).count();
    }
};

SystemClock g_systemClock;
PosixFileSystem g_posixFileSystem;
constexpr Environment g_systemEnvironment(g_systemClock, g_posixFileSystem);
std::atomic<const Environment*> g_environment{&g_systemEnvironment};

}  // namespace

const Environment& CurrentEnvironment() { return *g_environment.load(); }

int64_t NowMs() { return CurrentEnvironment().clock().Now(); }

int64_t NowUs() { return CurrentEnvironment().clock().NowMicroseconds(); }

ScopedEnvironment::ScopedEnvironment(Clock& clock) : ScopedEnvironment(clock, CurrentEnvironment().files()) {}

ScopedEnvironment::ScopedEnvironment(FileSystem& files) : ScopedEnvironment(CurrentEnvironment().clock(), files) {}

ScopedEnvironment::ScopedEnvironment(Clock& clock, FileSystem& files)
    : previous_(&CurrentEnvironment()), installed_(clock, files) {
    g_environment.store(&installed_);
}

ScopedEnvironment::~ScopedEnvironment() { g_environment.store(previous_); }

}  // namespace vorna
