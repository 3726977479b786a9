// A camera moved through the panel keeps moving only while its page keeps
// asking: a phone that drops off the network, runs flat or closes the page
// cannot send the stop, so the host stops a moving camera for which no
// request has come in for a second.
#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <tuple>
#include <vector>

#include "documents.h"

namespace vorna_host {

class MotionWatchdog {
public:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::milliseconds kPatience{1000};

    // A request for `camera` came in at `now`; `calls` is what it sent.
    void Request(const CameraKey& camera, const std::vector<OpcodeCall>& calls, Clock::time_point now);
    // The cameras left moving without a request for longer than kPatience;
    // they count as still from here on.
    std::vector<CameraKey> Overdue(Clock::time_point now);
    // Every camera a command went to.
    std::vector<CameraKey> Commanded() const;

private:
    using Key = std::tuple<int, int, int>;
    struct Watched {
        CameraKey camera;
        unsigned movingAxes = 0;  // one bit per axis
        bool commanded = false;
        Clock::time_point lastRequest;
    };

    mutable std::mutex mutex_;
    std::map<Key, Watched> cameras_;
};

}  // namespace vorna_host
