// What Pelco-D and Pelco-P frames have in common: the direction bits of a
// motion frame, its speed bytes, and the command numbers for presets and zoom
// speed. Every value is cut to the low 8 bits of its field.
#pragma once

#include <cstdint>

#include "protocols/axis_speed.h"
#include "protocols/protocol.h"

namespace vorna {
namespace pelco {

// Direction bits of a motion frame.
constexpr uint8_t kPanRight = 0x02;
constexpr uint8_t kPanLeft = 0x04;
constexpr uint8_t kTiltUp = 0x08;
constexpr uint8_t kTiltDown = 0x10;
constexpr uint8_t kZoomIn = 0x20;
constexpr uint8_t kZoomOut = 0x40;

// Command numbers written where a motion frame has its direction bits.
constexpr uint8_t kSetPreset = 0x03;
constexpr uint8_t kClearPreset = 0x05;
constexpr uint8_t kGoToPreset = 0x07;
constexpr uint8_t kSetZoomSpeed = 0x25;

// The on-screen menu opens when preset 95 is stored.
constexpr int kMenuPreset = 95;

// A number as its frame field holds it: negative numbers wrap, large ones lose
// their upper bits.
inline uint8_t Low8(uint32_t value) { return static_cast<uint8_t>(value & 0xFF); }

inline uint8_t MotionBits(int pan, int tilt, int zoom) {
    uint8_t bits = 0;
    if (pan < 0) bits |= kPanLeft;
    if (pan > 0) bits |= kPanRight;
    if (tilt < 0) bits |= kTiltDown;
    if (tilt > 0) bits |= kTiltUp;
    if (zoom < 0) bits |= kZoomOut;
    if (zoom > 0) bits |= kZoomIn;
    return bits;
}

// Speed magnitude 1 is the camera's speed 0, so a moving axis at magnitude 1
// and a still axis both send 0; only the direction bits tell them apart.
// Nothing clamps: magnitude 65 gives 0x40 and 257 wraps to 0x00.
inline uint8_t SpeedByte(int speed) {
    if (speed == 0) return 0;
    return Low8(SpeedMagnitude(speed) - 1);
}

// An unknown action still gets a frame, with command number 0.
inline uint8_t PresetCommand(int action) {
    switch (action) {
        case kPresetSet: return kSetPreset;
        case kPresetGoTo: return kGoToPreset;
        case kPresetClear: return kClearPreset;
        default: return 0;
    }
}

}  // namespace pelco
}  // namespace vorna
