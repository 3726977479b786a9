// The commands that Pelco-D and Pelco-P build alike. A command is four bytes
// (Pelco-D's command 1, command 2, data 1 and data 2; Pelco-P's data 1 to
// data 4) that each protocol wraps in its own envelope: start, address, end
// and checksum.
#pragma once

#include <cstdint>

#include "protocols/pelco_common.h"

namespace vorna {
namespace pelco {

// Each field is cut to its low 8 bits when the envelope is built.
struct CommandBytes {
    uint32_t command1;
    uint32_t command2;
    uint32_t data1;
    uint32_t data2;
};

// An extended command: its number in command 2, its value in data 2.
inline CommandBytes Extended(uint8_t command, uint32_t data) { return {0, command, 0, data}; }

// Zoom has no speed in the frame; it is set apart with ZoomSpeed.
inline CommandBytes Move(int pan, int tilt, int zoom) {
    return {0, MotionBits(pan, tilt, zoom), SpeedByte(pan), SpeedByte(tilt)};
}

inline CommandBytes Preset(int number, int action) {
    return Extended(PresetCommand(action), static_cast<uint32_t>(number));
}

inline CommandBytes ZoomSpeed(int speed) { return Extended(kSetZoomSpeed, static_cast<uint32_t>(speed)); }

// The value fills the four bytes, most significant first.
inline CommandBytes Raw(uint32_t value) { return {value >> 24, value >> 16, value >> 8, value}; }

// A lens motion by one command 1 bit per direction; 0 stops the lens.
inline CommandBytes LensMotion(int direction, uint8_t positive, uint8_t negative) {
    return {static_cast<uint32_t>(direction > 0 ? positive : direction < 0 ? negative : 0), 0, 0, 0};
}

}  // namespace pelco
}  // namespace vorna
