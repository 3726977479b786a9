// The Pelco-D frame as it lies on the wire, shared by the builder and the
// decoder: sync 0xFF, address, command 1, command 2, data 1, data 2,
// checksum.
#pragma once

#include <cstdint>

namespace vorna {
namespace pelco_d {

constexpr uint8_t kSync = 0xFF;

enum FrameOffset { kSyncAt, kAddressAt, kCommand1At, kCommand2At, kData1At, kData2At, kChecksumAt, kFrameSize };

// Command 1 bits.
constexpr uint8_t kFocusNear = 0x01;
constexpr uint8_t kIrisOpen = 0x02;
constexpr uint8_t kIrisClose = 0x04;

// Command 2: a bit in motion frames, a command number otherwise.
constexpr uint8_t kFocusFar = 0x80;
constexpr uint8_t kStartRecordingPattern = 0x1F;
constexpr uint8_t kStopRecordingPattern = 0x21;
constexpr uint8_t kRunPattern = 0x23;
constexpr uint8_t kAutoFocus = 0x2B;
constexpr uint8_t kAutoIris = 0x2D;
// Follows auto iris on, with data 2 kAutoIrisFollowUpData.
constexpr uint8_t kAutoIrisFollowUp = 0x41;
constexpr uint8_t kAutoIrisFollowUpData = 0x80;

// Data 2 of the auto iris and auto focus commands.
constexpr uint8_t kAutoOn = 0x00;
constexpr uint8_t kAutoOff = 0x02;

// Going to preset 33 turns the dome round.
constexpr int kFlipPreset = 33;

constexpr int kHsdMenuPreset = 90;
constexpr int kHsdFirstPatternPreset = 79;
constexpr int kHsdPatternCount = 3;

// The 8-bit sum of address, commands and data; the sync byte is not summed.
inline uint8_t Checksum(const uint8_t* frame) {
    uint32_t sum = 0;
    for (int at = kAddressAt; at <= kData2At; ++at) sum += frame[at];
    return static_cast<uint8_t>(sum);
}

}  // namespace pelco_d
}  // namespace vorna
