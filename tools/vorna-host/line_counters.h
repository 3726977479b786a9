// What one line has done since the host started, as `status` prints it and a
// monitoring panel shows it. A copy taken by LineWriter::Counters() under the
// line's lock: every field of one copy belongs to the same moment.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace vorna_host {

struct LineCounters {
    uint64_t sent = 0;      // messages whose last byte has left the wire
    uint64_t replaced = 0;  // motion messages overtaken by a newer one for the same camera before their turn
    uint64_t waiting = 0;   // messages handed over and not yet on the wire
    // Time from the module's callback to the last byte on the wire: the worst
    // since start, and the median of the most recent messages sent.
    std::chrono::microseconds worstLatency{0};
    std::chrono::microseconds medianLatency{0};
};

// "line COM1: 120 sent, 3 replaced, 1 waiting; callback to wire worst 150.0 ms, median 75.0 ms"
std::string DescribeLineCounters(const std::string& line, const LineCounters& counters);

}  // namespace vorna_host
