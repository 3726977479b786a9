// How long a frame occupies a serial line: every byte goes out as a start
// bit, eight data bits and a stop bit (8N1), so a line at `baud` carries
// baud / 10 bytes a second whatever the driver holds back.
#pragma once

#include <chrono>
#include <cstddef>

namespace vorna_host {

constexpr int kBitsPerCharacter = 10;

inline std::chrono::microseconds WireTime(size_t bytes, int baud) {
    return std::chrono::microseconds(static_cast<long long>(bytes) * kBitsPerCharacter * 1000000 / baud);
}

}  // namespace vorna_host
