// How punctually the worker sends what it schedules: command repeats
// (Panasonic, every 250 ms after an operator command) and tour steps
// (Pelco-D, dwell 1 s), on a quiet process and with every core kept busy.
// A frame is late by the time between the moment its millisecond began and
// the moment it reached the host.
#include <atomic>
#include <chrono>
#include <cmath>
#include <thread>

#include "bench_support.h"
#include "core/event_intake.h"
#include "host/host_sender.h"

using namespace vorna;
using namespace vorna_bench;

namespace {

constexpr int kRepeatingCameras = 16;
constexpr int kTouringCameras = 16;
constexpr int kStreams = kRepeatingCameras + kTouringCameras;
constexpr int64_t kRepeatInterval = 250;
constexpr int64_t kTourDwell = 1000;
constexpr auto kRun = std::chrono::milliseconds(3000);

int64_t MicrosecondsSinceEpoch() {
    using namespace std::chrono;
    return duration_cast<microseconds>(system_clock::now().time_since_epoch()).count();
}

// Arrival times per camera stream (stream n = camera n), in microseconds
// since the epoch. Filled under the controller's lock.
std::vector<int64_t> g_arrivals[kStreams + 1];

int RecordFrame(HostMessage* message, int) {
    if (message->type == VORNA_TYPE_SERIAL && message->stream >= 1 && message->stream <= kStreams)
        g_arrivals[message->stream].push_back(MicrosecondsSinceEpoch());
    return 0;
}

void AddCamera(PtzController& controller, int input, const char* protocol, bool touring) {
    auto camera = std::make_unique<PtzCamera>();
    camera->devicesId = 1;
    camera->deviceNumber = 1;
    camera->inputNumber = input;
    camera->protocol = FindProtocol(controller.protocols, protocol);
    camera->stream = static_cast<uint64_t>(input);
    if (touring) {
        camera->tourEnabled = true;
        camera->tourDwell = static_cast<int>(kTourDwell / 1000);
        camera->tour = {{1, 1}, {2, 2}};
    }
    controller.cameras.Append(std::move(camera));
}

// Lateness of every frame after a stream's first, in milliseconds.
std::vector<double> FrameLateness() {
    std::vector<double> late;
    for (int stream = 1; stream <= kStreams; ++stream) {
        const int64_t interval = stream <= kRepeatingCameras ? kRepeatInterval : kTourDwell;
        const auto& times = g_arrivals[stream];
        for (size_t i = 1; i < times.size(); ++i) {
            const int64_t due = (times[i - 1] / 1000 + interval) * 1000;
            late.push_back((times[i] - due) / 1000.0);
        }
    }
    return late;
}

double Percentile(std::vector<double> values, double fraction) {
    if (values.empty()) return 0;
    std::sort(values.begin(), values.end());
    return values[static_cast<size_t>(std::ceil(fraction * values.size())) - 1];
}

struct Lateness {
    double median;
    double p99;
    size_t frames;
};

// Runs the worker for kRun with `busyThreads` threads spinning beside it.
Lateness MeasureLateness(int busyThreads) {
    for (auto& times : g_arrivals) {
        times.clear();
        times.reserve(64);
    }
    g_hostCallback = &RecordFrame;
    PtzController controller;
    FillProtocolTable(controller.protocols);
    for (int input = 1; input <= kStreams; ++input)
        AddCamera(controller, input, input <= kRepeatingCameras ? "Panasonic" : "Pelco-D", input > kRepeatingCameras);
    controller.started = true;

    std::atomic<bool> spinning{true};
    std::vector<std::thread> load;
    for (int i = 0; i < busyThreads; ++i)
        load.emplace_back([&] {
            while (spinning.load(std::memory_order_relaxed)) {
            }
        });
    std::thread worker([&] { controller.RunWorkerCycle(); });
    // Operator commands spread over one repeat interval start the repeats.
    for (int input = 1; input <= kRepeatingCameras; ++input) {
        const std::string event = EventText(input);
        HandleEvent(controller, event.data(), static_cast<int64_t>(event.size()), false);
        std::this_thread::sleep_for(std::chrono::milliseconds(kRepeatInterval / kRepeatingCameras));
    }
    std::this_thread::sleep_for(kRun);
    controller.StopAxes();
    worker.join();
    spinning = false;
    for (auto& thread : load) thread.join();
    const std::vector<double> late = FrameLateness();
    return {Percentile(late, 0.5), Percentile(late, 0.99), late.size()};
}

void BM_WorkerLateness(benchmark::State& state) {
    const int cores = static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
    for (auto _ : state) {
        const auto idle = MeasureLateness(0);
        const auto busy = MeasureLateness(cores);
        state.counters["p50_idle_ms"] = idle.median;
        state.counters["p99_idle_ms"] = idle.p99;
        state.counters["p50_busy_ms"] = busy.median;
        state.counters["p99_busy_ms"] = busy.p99;
        state.counters["frames"] = static_cast<double>(idle.frames + busy.frames);
    }
}

}  // namespace

BENCHMARK(BM_WorkerLateness)->Name("worker/lateness")->Iterations(1)->Unit(benchmark::kMillisecond);
