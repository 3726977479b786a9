// What the benchmarks share: site-sized configuration documents, a host that
// discards or times what the module sends, and paired measurements whose
// ratio is taken per pair so that load on the machine cancels out.
#pragma once

#include <benchmark/benchmark.h>
#include <tinyxml.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "core/ptz_controller.h"

namespace vorna_bench {

// How the cameras of a configuration document are grouped.
enum class Grouping {
    kDevicePerCamera,  // one `Device` with one `Input` per camera
    kOneDevice,        // every camera an `Input` of the same `Device`
};

// A configuration document as the module writes it (four-space indentation),
// every camera on port "COM1" with `presets` named presets.
std::string ConfigurationText(int cameras, int presets, Grouping grouping, int delta);

// The host's serial-port document that binds "COM1" to Pelco-D, stream 1.
std::string SerialText();

// An immediate event for camera (1, 1, input): pan left.
std::string EventText(int input);

// A controller with every protocol registered and "COM1" bound, as after Open
// and the host's serial-port document.
void PrepareController(vorna::PtzController& controller);

// Installs a host callback that takes every message and does nothing.
void DiscardHostMessages();

// CPU seconds of the calling thread: on a shared machine, time the thread
// spent waiting for a core would only add noise to the ratios.
double ThreadSeconds();

// CPU seconds the calling thread spends in `work`.
template <typename Work>
double Seconds(Work work) {
    const double start = ThreadSeconds();
    work();
    return ThreadSeconds() - start;
}

double Median(std::vector<double> values);

// Collects the time of a measured operation and of its bare-parse reference,
// pair by pair, and reports the median ratio and both median times.
class PairedTimes {
public:
    void Add(double measured, double reference) {
        measured_.push_back(measured);
        reference_.push_back(reference);
        ratios_.push_back(measured / reference);
    }
    void Report(benchmark::State& state, double unitPerSecond, const char* unit) const;

private:
    std::vector<double> measured_;
    std::vector<double> reference_;
    std::vector<double> ratios_;
};

// Counts the bytes allocated through operator new from StartHeapCount on,
// less those released; HeapPeak is the most held at once.
void StartHeapCount();
size_t HeapPeak();
void StopHeapCount();

}  // namespace vorna_bench
