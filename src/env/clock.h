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
};

}  // namespace vorna
