#include "line_writer.h"

#include <algorithm>

#include "wire_time.h"

namespace vorna_host {

namespace {

// The median is taken over this many of the latest messages: recent enough to
// show the line as it is now, long enough to be steady.
constexpr size_t kMedianWindow = 1024;

}  // namespace

LineWriter::LineWriter(std::unique_ptr<SerialLine> line, LineScheduler scheduler, int baud, Reporter report)
    : line_(std::move(line)), baud_(baud), report_(std::move(report)), scheduler_(std::move(scheduler)) {}

LineWriter::~LineWriter() {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        stopping_ = true;
    }
    wake_.notify_all();
    drained_.notify_all();
    if (thread_.joinable()) thread_.join();
}

void LineWriter::Hand(std::string bytes, Clock::time_point now) {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        lastArrival_ = scheduler_.Add(std::move(bytes), now);
        if (!onTheWire_ && scheduler_.Waiting() == 1) PutOnTheWire(scheduler_.TakeNext(), now);
        handed_ = true;
    }
    wake_.notify_one();
}

LineWriter::Clock::time_point LineWriter::Pump(Clock::time_point now) {
    std::unique_lock<std::mutex> lock(mutex_);
    if (onTheWire_ && onTheWire_->withTheLine && now >= onTheWire_->leavesAt) Finish(lock);
    if (!onTheWire_ && scheduler_.Empty()) return kIdle;
    if (!onTheWire_ || !onTheWire_->withTheLine) {
        // Bytes still in the driver mean the wire is slower than its baud
        // says (flow control, a busy adapter): wait until they could have left.
        const size_t unsent = line_->Unsent();
        if (unsent > 0) return now + WireTime(unsent, baud_);
        if (!onTheWire_) PutOnTheWire(scheduler_.TakeNext(), now);
        if (!GiveToLine(lock, now)) return now;
    }
    return onTheWire_->leavesAt;
}

void LineWriter::PutOnTheWire(WaitingMessage message, Clock::time_point now) {
    const Clock::time_point leavesAt = now + WireTime(message.bytes.size(), baud_);
    onTheWire_ = OnTheWire{std::move(message), leavesAt, false};
}

// A device gets the message now, and its last byte leaves a frame time later;
// a line that only shows frames gets it when that time has come (Finish).
bool LineWriter::GiveToLine(std::unique_lock<std::mutex>& lock, Clock::time_point now) {
    onTheWire_->withTheLine = true;
    if (line_->HandedAt() != SerialLine::Handover::kFirstByte) return true;
    onTheWire_->leavesAt = std::max(onTheWire_->leavesAt, now + WireTime(onTheWire_->message.bytes.size(), baud_));
    if (SendUnlocked(lock, onTheWire_->message.bytes)) return true;
    onTheWire_.reset();
    drained_.notify_all();
    return false;
}

void LineWriter::Finish(std::unique_lock<std::mutex>& lock) {
    const bool sent = line_->HandedAt() == SerialLine::Handover::kFirstByte ||
                      SendUnlocked(lock, onTheWire_->message.bytes);
    if (sent) {
        ++counters_.sent;
        RecordLatency(onTheWire_->leavesAt - onTheWire_->message.handedOver);
    }
    onTheWire_.reset();
    drained_.notify_all();
}

// The line may take its time (a stalled device gives up only after a while);
// the callback must not wait for it meanwhile.
bool LineWriter::SendUnlocked(std::unique_lock<std::mutex>& lock, const std::string& bytes) {
    lock.unlock();
    std::string error;
    const bool sent = line_->Send(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size(), error);
    if (!sent && !error.empty()) report_(error);
    lock.lock();
    return sent;
}

void LineWriter::RecordLatency(Clock::duration latency) {
    counters_.worstLatency =
        std::max(counters_.worstLatency, std::chrono::duration_cast<std::chrono::microseconds>(latency));
    if (recentLatencies_.size() < kMedianWindow)
        recentLatencies_.push_back(latency);
    else
        recentLatencies_[nextLatency_] = latency;
    nextLatency_ = (nextLatency_ + 1) % kMedianWindow;
}

LineCounters LineWriter::Counters() const {
    std::vector<Clock::duration> latencies;
    LineCounters counters;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        counters = counters_;
        counters.replaced = scheduler_.Replaced();
        counters.waiting = scheduler_.Waiting() + (onTheWire_ ? 1 : 0);
        latencies = recentLatencies_;
    }
    if (!latencies.empty()) {
        const auto middle = latencies.begin() + latencies.size() / 2;
        std::nth_element(latencies.begin(), middle, latencies.end());
        counters.medianLatency = std::chrono::duration_cast<std::chrono::microseconds>(*middle);
    }
    return counters;
}

void LineWriter::Start() { thread_ = std::thread(&LineWriter::Run, this); }

void LineWriter::Run() {
    std::unique_lock<std::mutex> lock(mutex_);
    while (!stopping_) {
        handed_ = false;
        lock.unlock();
        const Clock::time_point next = Pump(Clock::now());
        lock.lock();
        const auto woken = [this] { return stopping_ || handed_; };
        if (next == kIdle)
            wake_.wait(lock, woken);
        else
            wake_.wait_until(lock, next, woken);
    }
}

bool LineWriter::DrainedUpTo(uint64_t arrival) const {
    return scheduler_.OldestArrival() > arrival && !(onTheWire_ && onTheWire_->message.arrival <= arrival);
}

void LineWriter::Drain() {
    std::unique_lock<std::mutex> lock(mutex_);
    const uint64_t last = lastArrival_;
    drained_.wait(lock, [&] { return stopping_ || DrainedUpTo(last); });
}

}  // namespace vorna_host
