// Puts one line's messages on the wire at the pace the wire takes them. The
// module's callback only queues (it must never wait for a line: the module
// holds its lock meanwhile, and every camera would wait); one writer per line
// hands the next message to the line only when the one before it has left the
// wire, so at most one frame ever sits in the driver, and the choice of what
// goes next is made at the last moment, when a stop can still overtake.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "line_counters.h"
#include "line_scheduler.h"
#include "serial_line.h"

namespace vorna_host {

class LineWriter {
public:
    using Clock = std::chrono::steady_clock;
    using Reporter = std::function<void(const std::string& problem)>;
    // What Pump returns when nothing waits.
    static constexpr Clock::time_point kIdle = Clock::time_point::max();

    LineWriter(std::unique_ptr<SerialLine> line, LineScheduler scheduler, int baud, Reporter report);
    // Stops the writer; whatever still waits is not sent (Drain first).
    ~LineWriter();

    // The callback's side: queues one message and returns. On an idle line
    // the message is on the wire from this moment: nothing handed after it
    // can overtake or replace it.
    void Hand(std::string bytes, Clock::time_point now);
    // The writer's side: does what is due at `now` and tells when it has
    // something to do again.
    Clock::time_point Pump(Clock::time_point now);
    // Runs the writer on a thread of its own, on the steady clock.
    void Start();
    // Waits until every message handed over so far has left the wire.
    void Drain();
    LineCounters Counters() const;

private:
    struct OnTheWire {
        WaitingMessage message;
        Clock::time_point leavesAt;
        bool withTheLine;  // the line has been given it
    };

    void Run();
    void PutOnTheWire(WaitingMessage message, Clock::time_point now);
    // False when the line refused the message.
    bool GiveToLine(std::unique_lock<std::mutex>& lock, Clock::time_point now);
    void Finish(std::unique_lock<std::mutex>& lock);
    bool SendUnlocked(std::unique_lock<std::mutex>& lock, const std::string& bytes);
    void RecordLatency(Clock::duration latency);
    bool DrainedUpTo(uint64_t arrival) const;

    std::unique_ptr<SerialLine> line_;
    const int baud_;
    const Reporter report_;

    mutable std::mutex mutex_;
    std::condition_variable wake_;
    std::condition_variable drained_;
    LineScheduler scheduler_;
    std::optional<OnTheWire> onTheWire_;
    uint64_t lastArrival_ = 0;
    bool handed_ = false;
    bool stopping_ = false;
    LineCounters counters_;
    std::vector<Clock::duration> recentLatencies_;  // a ring of the latest ones, for the median
    size_t nextLatency_ = 0;
    std::thread thread_;
};

}  // namespace vorna_host
