#include "replay/fake_time.h"

#include <dlfcn.h>
#include <pthread.h>
#include <time.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <list>
#include <vector>

namespace vorna_test {

namespace {

constexpr int64_t kNsPerSecond = 1000000000;
constexpr int64_t kRealtimeBaseNs = 1767225600LL * kNsPerSecond;  // 2026-01-01 00:00:00 UTC
constexpr int64_t kMonotonicBaseNs = 1000LL * kNsPerSecond;
constexpr int64_t kNever = INT64_MAX;
// A worker that keeps waiting for a deadline already passed, at one virtual
// instant, never lets time move: the run stops instead of hanging.
constexpr long kMaxSpins = 1000000;

std::atomic<bool> g_active{false};
std::atomic<int64_t> g_nowNs{0};
pthread_t g_control;

// A thread asleep until `deadline` on `cond`, which it waits on with `mutex`.
struct Sleeper {
    pthread_cond_t* cond;
    pthread_mutex_t* mutex;
    int64_t deadline;
    bool woken;
    bool wakeAsked;  // by the controlling thread, taking effect when its command returns
};

pthread_mutex_t g_lock = PTHREAD_MUTEX_INITIALIZER;  // guards the list and the spin count
pthread_cond_t g_changed = PTHREAD_COND_INITIALIZER;
std::list<Sleeper*> g_sleepers;
long g_spins = 0;

// The C library's own functions, behind this file's exported ones. The
// condition calls exist in two versions on some machines; the current one is
// asked for by name.
template <typename Fn>
Fn Real(const char* name, const char* version) {
    void* symbol = dlvsym(RTLD_NEXT, name, version);
    if (symbol == nullptr) symbol = dlsym(RTLD_NEXT, name);
    if (symbol == nullptr) std::abort();
    return reinterpret_cast<Fn>(symbol);
}

#define REAL(name, version) \
    static const auto real = Real<decltype(&::name)>(#name, version)

int RealWait(pthread_cond_t* cond, pthread_mutex_t* mutex) {
    REAL(pthread_cond_wait, "GLIBC_2.3.2");
    return real(cond, mutex);
}
int RealTimedWait(pthread_cond_t* cond, pthread_mutex_t* mutex, const timespec* at) {
    REAL(pthread_cond_timedwait, "GLIBC_2.3.2");
    return real(cond, mutex, at);
}
int RealBroadcast(pthread_cond_t* cond) {
    REAL(pthread_cond_broadcast, "GLIBC_2.3.2");
    return real(cond);
}
int RealClockGettime(clockid_t clock, timespec* ts) {
    REAL(clock_gettime, "GLIBC_2.17");
    return real(clock, ts);
}

bool IsVirtualClock(clockid_t clock) {
    return clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE || clock == CLOCK_MONOTONIC ||
           clock == CLOCK_MONOTONIC_RAW || clock == CLOCK_MONOTONIC_COARSE || clock == CLOCK_BOOTTIME;
}

int64_t BaseOf(clockid_t clock) {
    return clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE ? kRealtimeBaseNs : kMonotonicBaseNs;
}

int64_t Ns(const timespec& ts) { return ts.tv_sec * kNsPerSecond + ts.tv_nsec; }

bool IsVirtualThread() { return g_active && !pthread_equal(pthread_self(), g_control); }

void Lock() { pthread_mutex_lock(&g_lock); }
void Unlock() { pthread_mutex_unlock(&g_lock); }

// Sleeps on `cond` until woken through it or until virtual time reaches
// `deadline`; the caller holds `mutex`. Returns ETIMEDOUT or 0 (woken).
int VirtualWait(pthread_cond_t* cond, pthread_mutex_t* mutex, int64_t deadline) {
    Lock();
    if (deadline <= g_nowNs) {
        const bool spinning = ++g_spins > kMaxSpins;
        Unlock();
        if (spinning) {
            std::fprintf(stderr, "replay: the worker keeps waiting for deadlines already passed\n");
            std::abort();
        }
        return ETIMEDOUT;
    }
    Sleeper self{cond, mutex, deadline, false, false};
    g_sleepers.push_back(&self);
    RealBroadcast(&g_changed);
    while (!self.woken) {
        Unlock();
        RealWait(cond, mutex);
        Lock();
    }
    g_sleepers.remove(&self);
    const bool timedOut = g_nowNs >= deadline;
    RealBroadcast(&g_changed);
    Unlock();
    return timedOut ? ETIMEDOUT : 0;
}

// Everyone waiting on `cond` counts as woken from now on.
void MarkWoken(pthread_cond_t* cond) {
    if (!g_active) return;
    Lock();
    for (Sleeper* sleeper : g_sleepers)
        if (sleeper->cond == cond) sleeper->woken = true;
    RealBroadcast(&g_changed);
    Unlock();
}

// A wake-up the controlling thread asks for (a command, a configuration
// change) takes effect when its command has returned: what the command
// itself sends comes first, as one step of the script. False when nobody
// sleeps on `cond`.
bool AskWake(pthread_cond_t* cond) {
    bool asked = false;
    Lock();
    for (Sleeper* sleeper : g_sleepers)
        if (sleeper->cond == cond) sleeper->wakeAsked = asked = true;
    Unlock();
    return asked;
}

// Wakes the sleepers whose wake-up was asked for; the caller may hold `held`.
void WakeAsked(pthread_mutex_t* held = nullptr) {
    std::vector<Sleeper> woken;
    Lock();
    for (Sleeper* sleeper : g_sleepers)
        if (sleeper->wakeAsked && !sleeper->woken) {
            sleeper->woken = true;
            woken.push_back(*sleeper);
        }
    Unlock();
    for (const Sleeper& sleeper : woken) {
        if (sleeper.mutex != held) pthread_mutex_lock(sleeper.mutex);
        RealBroadcast(sleeper.cond);
        if (sleeper.mutex != held) pthread_mutex_unlock(sleeper.mutex);
    }
}

// Under the lock: how many sleep and whether one was woken and still runs.
bool IsQuiet(int workers) {
    int asleep = 0;
    for (const Sleeper* sleeper : g_sleepers) {
        if (sleeper->woken) return false;
        ++asleep;
    }
    return asleep >= workers;
}

// Under the lock: the sleeper due first, if it is due by `limit`.
Sleeper* EarliestDueBy(int64_t limit) {
    Sleeper* earliest = nullptr;
    for (Sleeper* sleeper : g_sleepers)
        if (sleeper->deadline <= limit && (earliest == nullptr || sleeper->deadline < earliest->deadline))
            earliest = sleeper;
    return earliest;
}

// Under the lock: sets the clock to the sleeper's deadline and marks it
// woken; the caller then wakes it through its condition.
void Due(Sleeper& sleeper) {
    if (sleeper.deadline > g_nowNs) {
        g_nowNs = sleeper.deadline;
        g_spins = 0;
    }
    sleeper.woken = true;
}

// The controlling thread blocks: while it waits, the sleepers run at their
// deadlines (Close waits for a worker that is due only later).
int ControlWait(pthread_cond_t* cond, pthread_mutex_t* mutex) {
    for (;;) {
        timespec at;
        RealClockGettime(CLOCK_REALTIME, &at);
        at.tv_nsec += 2000000;
        if (at.tv_nsec >= kNsPerSecond) {
            at.tv_nsec -= kNsPerSecond;
            ++at.tv_sec;
        }
        const int result = RealTimedWait(cond, mutex, &at);
        if (result != ETIMEDOUT) return result;
        Lock();
        const bool asked = std::any_of(g_sleepers.begin(), g_sleepers.end(),
                                       [](const Sleeper* s) { return s->wakeAsked && !s->woken; });
        Unlock();
        if (asked) {
            WakeAsked(mutex);
            continue;
        }
        Lock();
        Sleeper* next = IsQuiet(1) ? EarliestDueBy(kNever - 1) : nullptr;
        if (next == nullptr) {
            Unlock();
            continue;
        }
        Due(*next);
        pthread_cond_t* wakeCond = next->cond;
        pthread_mutex_t* wakeMutex = next->mutex;
        Unlock();
        if (wakeMutex != mutex) pthread_mutex_lock(wakeMutex);
        RealBroadcast(wakeCond);
        if (wakeMutex != mutex) pthread_mutex_unlock(wakeMutex);
        return 0;
    }
}

}  // namespace

void StartFakeTime() {
    g_control = pthread_self();
    g_nowNs = 0;
    g_active = true;
}

int64_t FakeNowNs() { return g_nowNs; }

void WaitUntilQuiet(int workers) {
    WakeAsked();
    Lock();
    while (!IsQuiet(workers)) RealWait(&g_changed, &g_lock);
    Unlock();
}

void AdvanceBy(int64_t ns, int workers) {
    const int64_t target = g_nowNs + ns;
    for (;;) {
        WaitUntilQuiet(workers);
        Lock();
        Sleeper* next = EarliestDueBy(target);
        if (next == nullptr) {
            if (target > g_nowNs) g_spins = 0;
            g_nowNs = target;
            Unlock();
            return;
        }
        Due(*next);
        pthread_cond_t* cond = next->cond;
        pthread_mutex_t* mutex = next->mutex;
        Unlock();
        pthread_mutex_lock(mutex);
        RealBroadcast(cond);
        pthread_mutex_unlock(mutex);
    }
}

}  // namespace vorna_test

using namespace vorna_test;

// The exported replacements (visible although the build hides symbols by
// default). Threads other than the controlling one, and only after
// StartFakeTime, see virtual time.
#define EXPORTED __attribute__((visibility("default")))

extern "C" {

EXPORTED int clock_gettime(clockid_t clock, timespec* ts) {
    if (!g_active || !IsVirtualClock(clock)) return RealClockGettime(clock, ts);
    const int64_t ns = BaseOf(clock) + g_nowNs;
    ts->tv_sec = ns / kNsPerSecond;
    ts->tv_nsec = ns % kNsPerSecond;
    return 0;
}

EXPORTED int pthread_cond_wait(pthread_cond_t* cond, pthread_mutex_t* mutex) {
    if (!g_active) return RealWait(cond, mutex);
    return IsVirtualThread() ? VirtualWait(cond, mutex, kNever) : ControlWait(cond, mutex);
}

EXPORTED int pthread_cond_clockwait(pthread_cond_t* cond, pthread_mutex_t* mutex, clockid_t clock, const timespec* at) {
    REAL(pthread_cond_clockwait, "GLIBC_2.30");
    if (!IsVirtualThread() || !IsVirtualClock(clock)) return real(cond, mutex, clock, at);
    return VirtualWait(cond, mutex, Ns(*at) - BaseOf(clock));
}

EXPORTED int pthread_cond_broadcast(pthread_cond_t* cond) {
    if (g_active && !IsVirtualThread() && AskWake(cond)) return 0;
    MarkWoken(cond);
    return RealBroadcast(cond);
}

}  // extern "C"
