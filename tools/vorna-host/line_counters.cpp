#include "line_counters.h"

#include <cstdio>

namespace vorna_host {

std::string DescribeLineCounters(const std::string& line, const LineCounters& counters) {
    const auto milliseconds = [](std::chrono::microseconds time) { return time.count() / 1000.0; };
    char text[160];
    std::snprintf(text, sizeof text,
                  ": %llu sent, %llu replaced, %llu waiting; callback to wire worst %.1f ms, median %.1f ms",
                  static_cast<unsigned long long>(counters.sent), static_cast<unsigned long long>(counters.replaced),
                  static_cast<unsigned long long>(counters.waiting), milliseconds(counters.worstLatency),
                  milliseconds(counters.medianLatency));
    return "line " + line + text;
}

}  // namespace vorna_host
