// SIGINT and SIGTERM as an event the host waits on: they are blocked in every
// thread (install before starting any) and read from a signalfd, so a signal
// ends a wait or a read of the next command, and shutdown then runs on the
// main thread in the normal order.
#pragma once

#include <string>

namespace vorna_host {

class StopSignal {
public:
    ~StopSignal();
    bool Install(std::string& error);

    int fd() const { return fd_; }
    // True once SIGINT or SIGTERM arrived; takes a pending one.
    bool Raised();
    // Sleeps up to `milliseconds`; false when a stop signal cut it short.
    bool Sleep(int milliseconds);
    // Call when poll() reported the signalfd readable.
    void Take();

private:
    int fd_ = -1;
    bool raised_ = false;
};

}  // namespace vorna_host
