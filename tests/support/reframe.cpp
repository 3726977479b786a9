#include "support/reframe.h"

#include <vector>

namespace vorna_test {

namespace {

constexpr int kBitsPerByte = 10;  // start, eight data bits, stop

// The line level bit by bit at the sending rate: idle high, then each byte
// as start 0, data least significant bit first, stop 1.
std::vector<bool> LineBits(const std::string& bytes) {
    std::vector<bool> bits;
    for (unsigned char byte : bytes) {
        bits.push_back(false);
        for (int bit = 0; bit < 8; ++bit) bits.push_back((byte >> bit & 1) != 0);
        bits.push_back(true);
    }
    return bits;
}

}  // namespace

std::string Reframe(const std::string& bytes, int sentBaud, int sampledBaud) {
    const std::vector<bool> bits = LineBits(bytes);
    const double sentBit = 1.0 / sentBaud;
    const double sampledBit = 1.0 / sampledBaud;
    const auto level = [&](double time) {
        const size_t bit = static_cast<size_t>(time / sentBit);
        return bit >= bits.size() || bits[bit];
    };
    std::string received;
    double after = 0;
    for (size_t edge = 0; edge < bits.size(); ++edge) {
        // A start is a falling edge, seen once the last byte's stop is sampled.
        const double start = edge * sentBit;
        if (start < after || bits[edge] || (edge > 0 && !bits[edge - 1])) continue;
        if (level(start + sampledBit / 2)) {
            after = start + sampledBit / 2;
            continue;
        }
        unsigned byte = 0;
        for (int bit = 0; bit < 8; ++bit) byte |= (level(start + (1.5 + bit) * sampledBit) ? 1u : 0u) << bit;
        const double stop = start + (kBitsPerByte - 0.5) * sampledBit;
        received += static_cast<char>(level(stop) ? byte : 0);
        after = stop;
    }
    return received;
}

}  // namespace vorna_test
