// The module's sense of time: milliseconds since the Unix epoch, through one
// replaceable clock so that tests can run every time-dependent behaviour on a
// fake clock.
#pragma once

#include <cstdint>

namespace vorna {

// A time that is not set.
constexpr int64_t kInvalidTime = -1;

class Clock {
public:
    virtual ~Clock() = default;
    virtual int64_t Now() = 0;
};

// Now, by the system clock unless a test installed another.
int64_t NowMs();

// Installs `clock` (null restores the system clock). Tests only.
void SetClock(Clock* clock);

}  // namespace vorna
