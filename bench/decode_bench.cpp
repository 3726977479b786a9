// The frame decoder and the monitor's identification: decoding must keep up
// with a thousand of the fastest lines (115200 baud, 11520 bytes a second), and
// finding protocol and baud on one second of traffic must not keep an
// installer waiting.
#include <algorithm>
#include <random>

#include "bench_support.h"
#include "monitor_identify.h"
#include "protocols/frame_decoder.h"
#include "protocols/protocol_table.h"
#include "support/reframe.h"

using namespace vorna;
using namespace vorna_bench;

namespace {

constexpr double kFastestLineBytesPerSecond = 115200 / 10.0;
constexpr size_t kTrafficBytes = 1 << 20;
// What one read of a serial line gives at most, as the monitor reads it.
constexpr size_t kReadBytes = 4096;
constexpr int kSampleBaud = 9600;
const int kTriedBauds[] = {1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200};

// What a keyboard sends most: moves, stops, presets, lens, on a few cameras.
std::string Traffic(const std::string& protocolName, size_t size) {
    ProtocolTable table;
    FillProtocolTable(table);
    CProtocol& protocol = *FindProtocol(table, protocolName);
    std::mt19937 random(7);
    const auto draw = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
    std::string traffic;
    while (traffic.size() < size) {
        const uint32_t address = draw(1, 8);
        switch (draw(0, 4)) {
            case 0: traffic += protocol.Move(address, draw(-64, 64), draw(-64, 64), draw(-2, 2)); break;
            case 1: traffic += protocol.Move(address, 0, 0, 0) + protocol.StopAxes(address, 1, 0, 0, 0, 0); break;
            case 2: traffic += protocol.Preset(address, draw(1, 32), draw(0, 1)); break;
            case 3: traffic += protocol.Pan(address, draw(-64, 64)) + protocol.Tilt(address, draw(-64, 64)); break;
            default: traffic += protocol.Iris(address, draw(-1, 1)) + protocol.Focus(address, draw(-1, 1)); break;
        }
    }
    return traffic;
}

void Decode(benchmark::State& state, const std::string& protocol) {
    const std::string traffic = Traffic(protocol, kTrafficBytes);
    double seconds = 0;
    for (auto _ : state) {
        seconds += Seconds([&] {
            const std::unique_ptr<FrameDecoder> decoder = MakeFrameDecoder(protocol);
            for (size_t at = 0; at < traffic.size(); at += kReadBytes) {
                benchmark::DoNotOptimize(decoder->Feed(traffic.data() + at, std::min(kReadBytes, traffic.size() - at)));
            }
        });
    }
    const double bytesPerSecond = traffic.size() * static_cast<double>(state.iterations()) / seconds;
    state.counters["MB_per_s"] = bytesPerSecond / 1e6;
    state.counters["ms_per_wire_second"] = kFastestLineBytesPerSecond / bytesPerSecond * 1000;
}

// One second of Pelco-D traffic sent at 9600 baud, as read at every rate the
// monitor tries, scored for every family.
void Identify(benchmark::State& state) {
    const std::string second = Traffic("Pelco-D", kSampleBaud / 10);
    std::vector<vorna_host::LineSample> samples;
    for (int baud : kTriedBauds) samples.push_back({baud, vorna_test::Reframe(second, kSampleBaud, baud)});
    std::vector<double> times;
    for (auto _ : state) {
        times.push_back(Seconds(
            [&] { benchmark::DoNotOptimize(vorna_host::ScoreSamples(samples, vorna_host::ProtocolFamilies())); }));
    }
    state.counters["identify_ms"] = Median(times) * 1000;
}

const char* const kFamilies[] = {"Pelco-D", "Pelco-P",  "Panasonic", "AD-RS422",
                                 "Bosch",   "GE-ASCII", "GE-Impac",  "AD-M3200 Multi"};

const bool kRegistered = [] {
    for (const char* family : kFamilies) {
        benchmark::RegisterBenchmark((std::string("decode/") + family).c_str(), Decode, std::string(family))
            ->Unit(benchmark::kMillisecond);
    }
    benchmark::RegisterBenchmark("decode/identify", Identify)->Unit(benchmark::kMillisecond);
    return true;
}();

}  // namespace
