// The configuration paths at site scale (1024 cameras with 32 named presets),
// each against a bare TinyXML parse of the same document: an update through
// IOCTL op 2 on cameras already configured, the same update with every camera
// under one device at two sizes, Open loading the file, and the heap the
// first update needs. Files go to a memory file system where there is one,
// so that no disk sync is measured.
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <fstream>

#include "bench_support.h"
#include "config/config_service.h"

using namespace vorna;
using namespace vorna_bench;

namespace {

constexpr int kCameras = 1024;
constexpr int kPresets = 32;

double BareParse(const std::string& text) {
    return Seconds([&] {
        TiXmlDocument document;
        document.Parse(text.c_str());
        benchmark::DoNotOptimize(document.RootElement());
    });
}

double ApplyUpdate(PtzController& controller, const std::string& text) {
    return Seconds([&] { Update(controller, text.data(), text.size()); });
}

void BM_UpdateConfigured(benchmark::State& state) {
    DiscardHostMessages();
    const std::string text = ConfigurationText(kCameras, kPresets, Grouping::kDevicePerCamera, 1);
    PtzController controller;
    PrepareController(controller);
    ApplyUpdate(controller, text);
    PairedTimes times;
    for (auto _ : state) times.Add(ApplyUpdate(controller, text), BareParse(text));
    times.Report(state, 1e3, "ms");
    state.counters["document_mb"] = text.size() / 1e6;
}

// How much faster than a bare parse the update grows per doubling of the
// cameras under one device, from a quarter of the cameras to all of them.
void BM_UpdateOneDevice(benchmark::State& state) {
    DiscardHostMessages();
    const std::string small = ConfigurationText(kCameras / 4, kPresets, Grouping::kOneDevice, 1);
    const std::string large = ConfigurationText(kCameras, kPresets, Grouping::kOneDevice, 1);
    PtzController smallController;
    PtzController largeController;
    PrepareController(smallController);
    PrepareController(largeController);
    ApplyUpdate(smallController, small);
    ApplyUpdate(largeController, large);
    std::vector<double> growthRatios;
    std::vector<double> largeTimes;
    for (auto _ : state) {
        const double updateSmall = ApplyUpdate(smallController, small);
        const double parseSmall = BareParse(small);
        const double updateLarge = ApplyUpdate(largeController, large);
        const double parseLarge = BareParse(large);
        // Two doublings: the square root is the growth of one.
        growthRatios.push_back(std::sqrt(updateLarge / updateSmall) / std::sqrt(parseLarge / parseSmall));
        largeTimes.push_back(updateLarge / parseLarge);
    }
    state.counters["doubling_growth_ratio"] = Median(growthRatios);
    state.counters["ratio"] = Median(largeTimes);
}

void BM_Open(benchmark::State& state) {
    DiscardHostMessages();
    {
        PtzController controller;
        PrepareController(controller);
        const std::string text = ConfigurationText(kCameras, kPresets, Grouping::kDevicePerCamera, 1);
        ApplyUpdate(controller, text);
    }
    std::ifstream file(kConfigFileName, std::ios::binary);
    const std::string saved((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    PairedTimes times;
    for (auto _ : state) {
        // Every Open starts from the same file.
        std::ofstream(kConfigFileName, std::ios::binary | std::ios::trunc) << saved;
        const double bare = Seconds([] {
            TiXmlDocument document;
            document.LoadFile(kConfigFileName);
            benchmark::DoNotOptimize(document.RootElement());
        });
        PtzController controller;
        times.Add(Seconds([&] { Start(controller); }), bare);
    }
    times.Report(state, 1e3, "ms");
    state.counters["file_mb"] = saved.size() / 1e6;
}

// Heap growth at the peak of the first update (every camera created), against
// the peak of a bare parse of the update.
void BM_FirstUpdateMemory(benchmark::State& state) {
    DiscardHostMessages();
    const std::string text = ConfigurationText(kCameras, kPresets, Grouping::kDevicePerCamera, 1);
    for (auto _ : state) {
        StartHeapCount();
        {
            TiXmlDocument document;
            document.Parse(text.c_str());
        }
        const double parseGrowth = static_cast<double>(HeapPeak());
        PtzController controller;
        PrepareController(controller);
        StartHeapCount();
        ApplyUpdate(controller, text);
        const double updateGrowth = static_cast<double>(HeapPeak());
        StopHeapCount();
        state.counters["ratio"] = updateGrowth / parseGrowth;
        state.counters["update_mib"] = updateGrowth / (1 << 20);
        state.counters["bare_parse_mib"] = parseGrowth / (1 << 20);
    }
}

}  // namespace

BENCHMARK(BM_UpdateConfigured)->Name("update/device-per-camera")->Iterations(9)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_UpdateOneDevice)->Name("update/one-device")->Iterations(7)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Open)->Name("open")->Iterations(7)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FirstUpdateMemory)->Name("update/first-memory")->Iterations(1)->Unit(benchmark::kMillisecond);
