// A clock that stands still until the test moves it; installed for the
// lifetime of the object.
#pragma once

#include "core/clock.h"

namespace vorna_test {

class FakeClock : public vorna::Clock {
public:
    explicit FakeClock(int64_t start = 1000000) : now(start) { vorna::SetClock(this); }
    ~FakeClock() override { vorna::SetClock(nullptr); }
    int64_t Now() override { return now; }

    int64_t now;
};

}  // namespace vorna_test
