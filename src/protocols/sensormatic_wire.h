// The AD-RS422 (Sensormatic) frame as it lies on the wire, shared by the
// builder and the decoder: address, command, zero to two data bytes, and a
// checksum that makes the 8-bit sum of the whole frame 0.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vorna {
namespace sensormatic {

// Single-byte commands.
constexpr uint8_t kPanLeft = 0x81;
constexpr uint8_t kPanRight = 0x82;
constexpr uint8_t kPanStop = 0x83;
constexpr uint8_t kTiltUp = 0x84;
constexpr uint8_t kTiltDown = 0x85;
constexpr uint8_t kTiltStop = 0x86;
constexpr uint8_t kFocusNear = 0x87;
constexpr uint8_t kFocusFar = 0x88;
constexpr uint8_t kFocusStop = 0x89;
constexpr uint8_t kZoomIn = 0x8A;
constexpr uint8_t kZoomOut = 0x8B;
constexpr uint8_t kZoomStop = 0x8C;
constexpr uint8_t kIrisOpen = 0x90;
constexpr uint8_t kIrisClose = 0x91;
constexpr uint8_t kIrisStop = 0x92;
constexpr uint8_t kApplePeel = 0xC6;

// Commands with data bytes.
constexpr uint8_t kVariableSpeed = 0xC0;
constexpr uint8_t kPreset = 0xC7;
constexpr uint8_t kSpecialFunction = 0xCC;

// Preset functions.
constexpr uint8_t kPresetFunctionStore = 0x01;
constexpr uint8_t kPresetFunctionGoTo = 0x02;

// Special functions.
constexpr uint8_t kFlip = 0x00;
constexpr uint8_t kMenuOpen = 0x01;
constexpr uint8_t kMenuClose = 0x02;
constexpr uint8_t kLensAuto = 0x08;

// Pattern commands: recording and running take the 1-based pattern number
// added to a base, so pattern 1 records with 0xA0 and runs with 0xB0. An
// unknown action still gets a frame, with command 0x00.
constexpr uint32_t kRecordPatternBase = 0x9F;
constexpr uint8_t kStopRecording = 0xB8;
constexpr uint8_t kPatternAction2Command = 0xA3;
constexpr uint32_t kRunPatternBase = 0xAF;
constexpr uint8_t kUnknownPatternAction = 0x00;

// The checksum for the `count` bytes before it.
inline uint8_t Checksum(const uint8_t* bytes, size_t count) {
    uint8_t sum = 0;
    for (size_t at = 0; at < count; ++at) sum = static_cast<uint8_t>(sum + bytes[at]);
    return static_cast<uint8_t>(0u - sum);
}

// Address and command, the command's data bytes, and the checksum.
inline size_t FrameLength(uint8_t command) {
    switch (command) {
        case kVariableSpeed:
        case kPreset: return 5;
        case kSpecialFunction: return 4;
        default: return 3;
    }
}

}  // namespace sensormatic
}  // namespace vorna
