// What the module takes from the world outside it besides the host: the
// clock and the file system, held by one environment object. Code asks the
// current environment; a test installs its own for a scope, with a fake clock
// that stands still or a file system that fails on demand.
#pragma once

#include <cstdint>

#include "env/clock.h"
#include "env/file_system.h"

namespace vorna {

class Environment {
public:
    constexpr Environment(Clock& clock, FileSystem& files) : clock_(&clock), files_(&files) {}

    Clock& clock() const { return *clock_; }
    FileSystem& files() const { return *files_; }

private:
    Clock* clock_;
    FileSystem* files_;
};

// The system clock and the POSIX file system, unless a test installed another
// environment.
const Environment& CurrentEnvironment();

// Now by the current environment's clock, in milliseconds and in
// microseconds.
int64_t NowMs();
int64_t NowUs();

// Installs an environment for its own lifetime that takes what it is not
// given from the environment it replaces, and restores that one when it goes.
// Installers nest; they are made and destroyed while no worker runs. Tests
// only.
class ScopedEnvironment {
public:
    explicit ScopedEnvironment(Clock& clock);
    explicit ScopedEnvironment(FileSystem& files);
    ScopedEnvironment(Clock& clock, FileSystem& files);
    ~ScopedEnvironment();

    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

private:
    const Environment* previous_;
    Environment installed_;
};

}  // namespace vorna
