#include "bench_support.h"

#include <malloc.h>
#include <time.h>

#include <atomic>
#include <cstdlib>
#include <mutex>
#include <new>

#include "config/config_service.h"
#include "host/host_sender.h"
#include "protocols/protocol_table.h"

namespace vorna_bench {

namespace {

// Counting costs a little on every allocation, so it runs only while a
// benchmark reads the heap.
std::atomic<bool> g_counting{false};
std::atomic<int64_t> g_heapInUse{0};
std::atomic<int64_t> g_heapPeak{0};

void CountAllocation(void* block) {
    if (!g_counting.load(std::memory_order_relaxed)) return;
    const int64_t size = static_cast<int64_t>(malloc_usable_size(block));
    const int64_t now = g_heapInUse.fetch_add(size, std::memory_order_relaxed) + size;
    int64_t peak = g_heapPeak.load(std::memory_order_relaxed);
    while (now > peak && !g_heapPeak.compare_exchange_weak(peak, now, std::memory_order_relaxed)) {
    }
}

void CountRelease(void* block) {
    if (block != nullptr && g_counting.load(std::memory_order_relaxed)) g_heapInUse.fetch_sub(static_cast<int64_t>(malloc_usable_size(block)), std::memory_order_relaxed);
}

int DiscardMessage(HostMessage*, int) { return 0; }

const char* const kIndent = "    ";

std::string Indent(int depth) {
    std::string text;
    for (int i = 0; i < depth; ++i) text += kIndent;
    return text;
}

}  // namespace

std::string ConfigurationText(int cameras, int presets, Grouping grouping, int delta) {
    std::string text = "<?xml ?>\n<Tarn Delta=\"" + std::to_string(delta) + "\">\n";
    text += Indent(1) + "<PTZ ID=\"1048576\" OPCODE_MAX=\"74\">\n";
    text += Indent(2) + "<Devices ID=\"1\">\n";
    for (int camera = 1; camera <= cameras; ++camera) {
        const bool ownDevice = grouping == Grouping::kDevicePerCamera;
        if (ownDevice || camera == 1)
            text += Indent(3) + "<Device Number=\"" + std::to_string(ownDevice ? camera : 1) + "\">\n";
        const int input = ownDevice ? 1 : camera;
        text += Indent(4) + "<Input Number=\"" + std::to_string(input) + "\" Protocol=\"Pelco-D\" SerialPort=\"COM1\" Address=\"" +
                std::to_string(camera % 255 + 1) +
                "\" Presets=\"32\" TourDwell=\"10\" TourEnabled=\"0\" TourIdle=\"60\">\n";
        for (int preset = 1; preset <= presets; ++preset)
            text += Indent(5) + "<Preset Number=\"" + std::to_string(preset) + "\" Name=\"Camera " +
                    std::to_string(camera) + " view " + std::to_string(preset) + "\" />\n";
        text += Indent(4) + "</Input>\n";
        if (ownDevice || camera == cameras) text += Indent(3) + "</Device>\n";
    }
    text += Indent(2) + "</Devices>\n" + Indent(1) + "</PTZ>\n</Tarn>\n";
    return text;
}

std::string SerialText() {
    return "<Tarn Delta=\"0\"><Serial ID=\"851968\"><Input><Device Port=\"COM1\" Protocol=\"Pelco-D\" Use=\"2\" "
           "StreamID=\"1\" /></Input></Serial></Tarn>";
}

std::string EventText(int input) {
    return "<Tarn><PTZ ID=\"1048576\"><Devices ID=\"1\"><Device Number=\"1\"><Video><Input Number=\"" +
           std::to_string(input) + "\" Opcode=\"33\" Parm=\"1\" /></Video></Device></Devices></PTZ></Tarn>";
}

void PrepareController(vorna::PtzController& controller) {
    vorna::FillProtocolTable(controller.protocols);
    const std::string serial = SerialText();
    vorna::Update(controller, serial.data(), serial.size());
}

void DiscardHostMessages() { vorna::g_hostCallback = &DiscardMessage; }

double ThreadSeconds() {
    timespec now;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

double Median(std::vector<double> values) {
    if (values.empty()) return 0;
    std::sort(values.begin(), values.end());
    const size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

void PairedTimes::Report(benchmark::State& state, double unitPerSecond, const char* unit) const {
    state.counters["ratio"] = Median(ratios_);
    state.counters[std::string("measured_") + unit] = Median(measured_) * unitPerSecond;
    state.counters[std::string("bare_parse_") + unit] = Median(reference_) * unitPerSecond;
}

void StartHeapCount() {
    g_heapInUse.store(0);
    g_heapPeak.store(0);
    g_counting.store(true);
}

size_t HeapPeak() { return static_cast<size_t>(g_heapPeak.load()); }

void StopHeapCount() { g_counting.store(false); }

}  // namespace vorna_bench

// Every allocation of the process (TinyXML's and the standard library's
// included) passes through here, so that the peak of a document's life can be
// read off.
void* operator new(size_t size) {
    void* block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) throw std::bad_alloc();
    vorna_bench::CountAllocation(block);
    return block;
}

void* operator new[](size_t size) { return operator new(size); }

// The block came from malloc in operator new above.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
void operator delete(void* block) noexcept {
    vorna_bench::CountRelease(block);
    std::free(block);
}

void operator delete[](void* block) noexcept { operator delete(block); }
void operator delete(void* block, size_t) noexcept { operator delete(block); }
void operator delete[](void* block, size_t) noexcept { operator delete(block); }
