#include "stop_signal.h"

#include <poll.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>

namespace vorna_host {

StopSignal::~StopSignal() {
    if (fd_ >= 0) close(fd_);
}

bool StopSignal::Install(std::string& error) {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    if (pthread_sigmask(SIG_BLOCK, &signals, nullptr) != 0 ||
        (fd_ = signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC)) < 0) {
        error = std::string("cannot watch for stop signals: ") + std::strerror(errno);
        return false;
    }
    return true;
}

void StopSignal::Take() {
    signalfd_siginfo info;
    while (read(fd_, &info, sizeof info) == static_cast<ssize_t>(sizeof info)) raised_ = true;
}

bool StopSignal::Raised() {
    Take();
    return raised_;
}

bool StopSignal::Sleep(int milliseconds) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(milliseconds);
    while (!Raised()) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        if (left <= 0) return true;
        pollfd entry{fd_, POLLIN, 0};
        poll(&entry, 1, static_cast<int>(left));
    }
    return false;
}

}  // namespace vorna_host
