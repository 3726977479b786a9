// The Bosch frame as it lies on the wire, shared by the builder and the
// decoder: head, address in two 7-bit halves, opcode and data, and a 7-bit
// checksum.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vorna {
namespace bosch {

// The head byte tells how many opcode and data bytes follow the address.
constexpr uint8_t kHeadFourBytes = 0x87;
constexpr uint8_t kHeadThreeBytes = 0x86;

constexpr uint8_t kControl = 0x05;
constexpr uint8_t kPreset = 0x07;
// Raw commands with one of these opcodes carry four bytes, all others three.
constexpr uint8_t kRawLongOpcodeA = 0x05;
constexpr uint8_t kRawLongOpcodeB = 0x08;

// Control frame: byte 4 carries tilt speed and zoom speed, byte 5 pan speed
// and the lens, byte 6 the directions.
constexpr uint8_t kPanRight = 0x01;
constexpr uint8_t kPanLeft = 0x02;
constexpr uint8_t kTiltDown = 0x04;
constexpr uint8_t kTiltUp = 0x08;
constexpr uint8_t kZoomOut = 0x10;
constexpr uint8_t kZoomIn = 0x20;
constexpr uint8_t kIrisClose = 0x02;
constexpr uint8_t kIrisOpen = 0x04;
constexpr uint8_t kFocusFar = 0x01;
constexpr uint8_t kFocusNear = 0x40;

// Preset function: the preset number's bits above 7 go into the high nibble.
constexpr uint32_t kPresetFunctionStore = 4;
constexpr uint32_t kPresetFunctionGoTo = 5;

enum FrameOffset { kHeadAt, kAddressHighAt, kAddressLowAt, kOpcodeAt, kData1At, kData2At, kData3At };
constexpr size_t kFourByteFrame = 8;
constexpr size_t kThreeByteFrame = 7;

// The low 7 bits of the sum of the `count` bytes before it.
inline uint8_t Checksum(const uint8_t* bytes, size_t count) {
    uint32_t sum = 0;
    for (size_t at = 0; at < count; ++at) sum += bytes[at];
    return static_cast<uint8_t>(sum & 0x7F);
}

}  // namespace bosch
}  // namespace vorna
