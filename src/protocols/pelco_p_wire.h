// The Pelco-P frame as it lies on the wire, shared by the builder and the
// decoder: start 0xA0, address - 1, four data bytes, end 0xAF, checksum.
#pragma once

#include <cstdint>

namespace vorna {
namespace pelco_p {

constexpr uint8_t kStart = 0xA0;
constexpr uint8_t kEnd = 0xAF;

enum FrameOffset { kStartAt, kAddressAt, kData1At, kData2At, kData3At, kData4At, kEndAt, kChecksumAt, kFrameSize };

// Data 1 bits.
constexpr uint8_t kFocusFar = 0x01;
constexpr uint8_t kFocusNear = 0x02;
constexpr uint8_t kIrisOpen = 0x04;
constexpr uint8_t kIrisClose = 0x08;

// XOR of every byte before the checksum, start and end included.
inline uint8_t Checksum(const uint8_t* frame) {
    uint8_t sum = 0;
    for (int at = kStartAt; at <= kEndAt; ++at) sum ^= frame[at];
    return sum;
}

}  // namespace pelco_p
}  // namespace vorna
