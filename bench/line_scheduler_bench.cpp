// How long an operator's stop takes from the module's callback to the last
// byte on the wire, on one line of moving Panasonic domes (each repeats its
// frame every 250 ms), for vorna-host's line writer and for plain writing in
// the order frames come. Time is simulated: the line drains at its baud rate
// exactly, so the figures are the line's, not the machine's.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "line_writer.h"
#include "message_class.h"
#include "wire_time.h"

using namespace vorna_host;
using Clock = LineWriter::Clock;
using std::chrono::milliseconds;

namespace {

constexpr auto kRepeatInterval = milliseconds(250);
constexpr auto kRun = std::chrono::seconds(120);
// Every second one camera is stopped; half a second later it moves again.
constexpr auto kStopInterval = milliseconds(1000);
constexpr auto kStopLength = milliseconds(500);
constexpr size_t kFrameBytes = 18;

std::string PanasonicFrame(int address, bool moving) {
    char frame[32];
    std::snprintf(frame, sizeof frame, "\x02" "AD%02d;GC7:%s\x03", address, moving ? "9028870" : "9028100");
    return frame;
}

// The wire as a camera sees it: finds the frame that carries each operator
// stop and takes its latency. Frames sent in order are found by their place
// (the stop's repeats from an earlier stop may still be queued); otherwise the
// first stop frame of the camera is it, whether the asked one or a repeat
// that replaced it.
class SimulatedWire : public SerialLine {
public:
    struct Ask {
        Clock::time_point at = Clock::time_point::max();
        uint64_t place = 0;  // the stop's place among all frames handed over
    };

    SimulatedWire(const Clock::time_point& now, int baud, bool inOrder, std::vector<Ask>& asks,
                  std::vector<double>& latencies)
        : now_(now), baud_(baud), inOrder_(inOrder), asks_(asks), latencies_(latencies) {}

    bool Send(const uint8_t* bytes, size_t length, std::string&) override {
        const std::string frame(reinterpret_cast<const char*>(bytes), length);
        const int camera = std::stoi(frame.substr(3, 2));
        Ask& ask = asks_[camera];
        ++sent_;
        const bool carriesStop = inOrder_ ? sent_ == ask.place : frame == PanasonicFrame(camera, false);
        if (ask.at == Clock::time_point::max() || !carriesStop) return true;
        const auto lastByte = now_ + WireTime(length, baud_);
        latencies_.push_back(std::chrono::duration<double, std::milli>(lastByte - ask.at).count());
        ask = Ask{};
        return true;
    }

private:
    const Clock::time_point& now_;
    int baud_;
    bool inOrder_;
    uint64_t sent_ = 0;
    std::vector<Ask>& asks_;
    std::vector<double>& latencies_;
};

// Stop latencies in milliseconds over the whole run. `inOrder` writes every
// frame in the order it came, as a host that writes in its callback does
// (the driver's queue then holds what the wire has not taken yet).
std::vector<double> StopLatencies(int baud, int cameras, bool inOrder) {
    Clock::time_point now{};
    std::vector<SimulatedWire::Ask> asks(cameras + 1);
    std::vector<double> latencies;
    LineWriter writer(std::make_unique<SimulatedWire>(now, baud, inOrder, asks, latencies),
                      LineScheduler(ClassifierFor("Panasonic"), inOrder), baud, [](const std::string&) {});
    std::vector<bool> moving(cameras + 1, true);
    std::vector<Clock::time_point> nextRepeat(cameras + 1);
    for (int camera = 1; camera <= cameras; ++camera)
        nextRepeat[camera] = Clock::time_point(kRepeatInterval * (camera - 1) / cameras);
    Clock::time_point nextStop(kStopInterval);
    Clock::time_point wake = Clock::time_point::max();
    int stopped = 0;
    uint64_t handed = 0;
    const auto hand = [&](int camera) {
        ++handed;
        writer.Hand(PanasonicFrame(camera, moving[camera]), now);
        nextRepeat[camera] = now + kRepeatInterval;
        wake = writer.Pump(now);
    };
    while (now < Clock::time_point(kRun)) {
        const Clock::time_point nextRepeatAt = *std::min_element(nextRepeat.begin() + 1, nextRepeat.end());
        const Clock::time_point resumeAt = stopped ? nextStop - kStopInterval + kStopLength : Clock::time_point::max();
        now = std::min({nextRepeatAt, nextStop, resumeAt, wake});
        if (now == wake) wake = writer.Pump(now);
        if (now == resumeAt) {
            moving[stopped] = true;
            hand(stopped);
            stopped = 0;
        }
        if (now == nextStop) {
            stopped = static_cast<int>((now.time_since_epoch() / kStopInterval) % cameras) + 1;
            moving[stopped] = false;
            asks[stopped] = SimulatedWire::Ask{now, handed + 1};
            hand(stopped);
            nextStop += kStopInterval;
        }
        for (int camera = 1; camera <= cameras; ++camera)
            if (nextRepeat[camera] == now) hand(camera);
    }
    return latencies;
}

double Percentile99(std::vector<double> values) {
    if (values.empty()) return 0;
    const auto at = values.begin() + static_cast<long>(values.size() * 99 / 100);
    std::nth_element(values.begin(), at, values.end());
    return *at;
}

void BM_StopLatency(benchmark::State& state) {
    const int baud = static_cast<int>(state.range(0));
    const int cameras = static_cast<int>(state.range(1));
    double scheduled = 0;
    double inOrder = 0;
    for (auto _ : state) {
        scheduled = Percentile99(StopLatencies(baud, cameras, false));
        inOrder = Percentile99(StopLatencies(baud, cameras, true));
    }
    const double frameMs = std::chrono::duration<double, std::milli>(WireTime(kFrameBytes, baud)).count();
    state.counters["scheduler_p99_ms"] = scheduled;
    state.counters["scheduler_p99_frames"] = scheduled / frameMs;
    state.counters["in_order_p99_ms"] = inOrder;
    state.counters["in_order_p99_frames"] = inOrder / frameMs;
}

}  // namespace

BENCHMARK(BM_StopLatency)
    ->Name("line/stop-latency")
    ->ArgNames({"baud", "cameras"})
    ->ArgsProduct({{2400, 9600}, {1, 2, 4, 8, 16, 32}})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
