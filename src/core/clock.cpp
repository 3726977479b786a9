#include "core/clock.h"

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
};

SystemClock g_systemClock;
std::atomic<Clock*> g_clock{&g_systemClock};

}  // namespace

int64_t NowMs() { return g_clock.load()->Now(); }
void SetClock(Clock* clock) { g_clock.store(clock ? clock : &g_systemClock); }

}  // namespace vorna
