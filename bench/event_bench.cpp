// An event document from the host to the serial callback, against a bare
// TinyXML parse of the same document, with the addressed camera first in a
// table of one and last in a table of 4096. Each event is timed from the
// call to the moment the callback receives its frame, each parse from its
// start to its end; the medians of many single timings leave out the moments
// the thread lost its core.
#include <chrono>
#include <memory>

#include "bench_support.h"
#include "core/event_intake.h"
#include "host/host_sender.h"

using namespace vorna;
using namespace vorna_bench;

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kRounds = 200;
constexpr int kPerRound = 100;

Clock::time_point g_frameTime;

int RecordFrameTime(HostMessage* message, int) {
    if (message->type == VORNA_TYPE_SERIAL) g_frameTime = Clock::now();
    return 0;
}

double Nanoseconds(Clock::time_point from, Clock::time_point to) {
    return std::chrono::duration<double, std::nano>(to - from).count();
}

void BM_Event(benchmark::State& state) {
    const int cameras = static_cast<int>(state.range(0));
    PtzController controller;
    DiscardHostMessages();
    PrepareController(controller);
    g_hostCallback = &RecordFrameTime;
    CProtocol* pelco = FindProtocol(controller.protocols, "Pelco-D");
    for (int input = 1; input <= cameras; ++input) {
        auto camera = std::make_unique<PtzCamera>();
        camera->devicesId = 1;
        camera->deviceNumber = 1;
        camera->inputNumber = input;
        camera->protocol = pelco;
        camera->stream = 1;
        controller.cameras.Append(std::move(camera));
    }
    const std::string text = EventText(cameras);
    std::vector<double> events;
    std::vector<double> parses;
    for (auto _ : state) {
        for (int round = 0; round < kRounds; ++round) {
            for (int i = 0; i < kPerRound; ++i) {
                TiXmlDocument document;
                const Clock::time_point start = Clock::now();
                document.Parse(text.c_str());
                parses.push_back(Nanoseconds(start, Clock::now()));
            }
            for (int i = 0; i < kPerRound; ++i) {
                const Clock::time_point start = Clock::now();
                HandleEvent(controller, text.data(), static_cast<int64_t>(text.size()), false);
                events.push_back(Nanoseconds(start, g_frameTime));
            }
        }
    }
    const double event = Median(events);
    const double parse = Median(parses);
    state.counters["ratio"] = event / parse;
    state.counters["measured_us"] = event / 1e3;
    state.counters["bare_parse_us"] = parse / 1e3;
}

}  // namespace

BENCHMARK(BM_Event)->Name("event")->ArgName("cameras")->Arg(1)->Arg(4096)->Iterations(1)->Unit(benchmark::kMillisecond);
