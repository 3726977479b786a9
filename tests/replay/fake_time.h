// Virtual time for an unmodified libvorna.so running in this process.
//
// The replay runner exports its own clock_gettime and the condition-variable
// calls the module makes (pthread_cond_wait, pthread_cond_clockwait,
// pthread_cond_broadcast). The dynamic linker binds the module's (and the C++
// library's) calls to these before the C library's, so the module reads the
// virtual clock and every timed wait of another thread (the worker) becomes
// "asleep until virtual time T". Time stands still while anything runs; it
// moves only when the script waits (AdvanceBy) or the controlling thread
// blocks in a wait of its own (Close waiting for the worker), and then jumps
// straight to the earliest sleeper's deadline, so the worker wakes at exactly
// its deadline. A wake-up that the controlling thread's own call asks for (an
// event or a configuration change waking the worker) takes effect when that
// call has returned, so its output and the worker's come in one order. Runs
// are deterministic and take no real time.
#pragma once

#include <cstdint>

namespace vorna_test {

// Starts virtual time (realtime clock at a fixed date) and makes the calling
// thread the controlling one; its own waits and sleeps are never virtual.
void StartFakeTime();

// Nanoseconds of virtual time since StartFakeTime.
int64_t FakeNowNs();

// Blocks until every other thread that ever slept virtually is asleep again
// and none has been woken. `workers` is how many such threads must be asleep
// (the module's worker: 1 while it runs, 0 after Close).
void WaitUntilQuiet(int workers);

// Moves virtual time forward by `ns`, waking each sleeper at its deadline in
// turn and letting it run until it sleeps again.
void AdvanceBy(int64_t ns, int workers);

}  // namespace vorna_test
