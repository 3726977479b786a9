// The GE Impac frame as it lies on the wire, shared by the builder and the
// decoder: start 0xFF, count, command class and code, two zero bytes, the
// address, parameters, and a checksum.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vorna {
namespace ge_impac {

constexpr uint8_t kStart = 0xFF;

// Command classes and codes.
constexpr uint8_t kLensKeyClass = 0x20;
constexpr uint8_t kCameraClass = 0x09;
constexpr uint8_t kPresetSetCode = 0x0A;
constexpr uint8_t kPresetGoToCode = 0x0B;
constexpr uint8_t kMoveCode = 0x14;
// Byte 4 of a lens-key frame; 0x00 in all other frames.
constexpr uint8_t kLensKeyFlag = 0x80;

// Lens keys: upper case moves, lower case stops.
struct KeyPair {
    char negative;
    char positive;
};
constexpr KeyPair kIrisKeys{'C', 'P'};
constexpr KeyPair kFocusKeys{'F', 'N'};
constexpr KeyPair kStopIrisKeys{'c', 'p'};
constexpr KeyPair kStopFocusKeys{'f', 'n'};

// The top bit of a move speed byte means right, up or in.
constexpr uint32_t kPositiveDirection = 0x80;

enum FrameOffset { kStartAt, kCountAt, kClassAt, kCodeAt, kFlagAt, kReservedAt, kAddressAt, kParameterAt };
// The count of the lens-key and preset frames, and of the move frame.
constexpr uint8_t kShortCount = 7;
constexpr uint8_t kMoveCount = 9;

// The two's complement of the sum of the `count` bytes before it, the start
// byte left out, so that count to checksum add up to 0.
inline uint8_t Checksum(const uint8_t* frame, size_t count) {
    uint8_t sum = 0;
    for (size_t at = kCountAt; at < count; ++at) sum = static_cast<uint8_t>(sum + frame[at]);
    return static_cast<uint8_t>(0u - sum);
}

}  // namespace ge_impac
}  // namespace vorna
