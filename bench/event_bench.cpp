// An event document from the host to the serial callback, against a bare
// TinyXML parse of the same document, with the addressed camera first in a
// table of one and last in a table of 4096.
#include <memory>

#include "bench_support.h"
#include "core/event_intake.h"

using namespace vorna;
using namespace vorna_bench;

namespace {

constexpr int kBatch = 200;
constexpr int kPairs = 40;

void BM_Event(benchmark::State& state) {
    const int cameras = static_cast<int>(state.range(0));
    DiscardHostMessages();
    PtzController controller;
    PrepareController(controller);
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
    PairedTimes times;
    for (auto _ : state) {
        for (int pair = 0; pair < kPairs; ++pair) {
            const double parse = Seconds([&] {
                for (int i = 0; i < kBatch; ++i) {
                    TiXmlDocument document;
                    document.Parse(text.c_str());
                    benchmark::DoNotOptimize(document.RootElement());
                }
            });
            const double event = Seconds([&] {
                for (int i = 0; i < kBatch; ++i)
                    HandleEvent(controller, text.data(), static_cast<int64_t>(text.size()), false);
            });
            times.Add(event / kBatch, parse / kBatch);
        }
    }
    times.Report(state, 1e6, "us");
}

}  // namespace

BENCHMARK(BM_Event)->Name("event")->ArgName("cameras")->Arg(1)->Arg(4096)->Iterations(1)->Unit(benchmark::kMillisecond);
