// The module's sense of time: milliseconds since the Unix epoch.
#pragma once

#include <cstdint>

namespace vorna {

// A time that is not set.
constexpr int64_t kInvalidTime = -1;

class Clock {
public:
    virtual ~Clock() = default;
    virtual int64_t Now() = 0;
    // The same clock in microseconds, for waits that end within a
    // millisecond; a clock without finer steps gives Now() * 1000.
    virtual int64_t NowMicroseconds() { return Now() * 1000; }
};

}  // namespace vorna
