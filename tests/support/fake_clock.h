// A clock that stands still until the test moves it; installed for the
// lifetime of the object.
#pragma once

#include "env/environment.h"

namespace vorna_test {

class FakeClock : public vorna::Clock {
public:
    explicit FakeClock(int64_t start = 1000000) : now(start) {}
    int64_t Now() override { return now; }

    int64_t now;

private:
    vorna::ScopedEnvironment installed_{*this};
};

}  // namespace vorna_test
