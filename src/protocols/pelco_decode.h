// What Pelco-D and Pelco-P frames share when read back: the motion frame's
// direction bits and speed bytes, and the preset and zoom speed commands.
#pragma once

#include <cstdint>

#include "protocols/decode_words.h"
#include "protocols/pelco_commands.h"
#include "protocols/pelco_common.h"

namespace vorna {
namespace pelco {

// The signed speed a motion frame carries for one axis: speed byte + 1 in the
// direction of its bit. A speed byte without a direction bit, or both bits of
// one axis, is no motion the builder makes.
inline bool AxisSpeed(uint8_t bits, uint8_t negative, uint8_t positive, int speedByte, int& speed) {
    const bool back = (bits & negative) != 0;
    const bool forth = (bits & positive) != 0;
    if (back && forth) return false;
    if (!back && !forth) {
        speed = 0;
        return speedByte == 0;
    }
    speed = (speedByte + 1) * (back ? -1 : 1);
    return true;
}

// A motion frame: direction bits, pan speed byte, tilt speed byte. Zoom has
// no speed in the frame, so it reads back as 1.
inline bool DecodeMove(uint8_t bits, uint8_t panSpeed, uint8_t tiltSpeed, DecodedFrame& frame) {
    if ((bits & ~(kPanLeft | kPanRight | kTiltUp | kTiltDown | kZoomIn | kZoomOut)) != 0) return false;
    int pan = 0, tilt = 0, zoom = 0;
    if (!AxisSpeed(bits, kPanLeft, kPanRight, panSpeed, pan) || !AxisSpeed(bits, kTiltDown, kTiltUp, tiltSpeed, tilt) ||
        !AxisSpeed(bits, kZoomOut, kZoomIn, 0, zoom)) {
        return false;
    }
    DescribeMove(frame, pan, tilt, zoom);
    return true;
}

inline bool Other(DecodedFrame& frame, const char* operation, std::vector<int> args, std::string words) {
    Describe(frame, operation, std::move(args), FrameKind::kOther, std::move(words));
    return true;
}

inline bool Lens(DecodedFrame& frame, const char* operation, int direction, std::string words) {
    Describe(frame, operation, {direction}, FrameKind::kMotion, std::move(words));
    return true;
}

// Store, clear and go to preset, and zoom speed. Storing the menu preset is
// what opens the menu, unless `menuByPreset` is off.
inline bool DecodePresetCommand(uint8_t command, int value, bool menuByPreset, DecodedFrame& frame) {
    switch (command) {
        case kSetPreset:
            if (menuByPreset && value == kMenuPreset)
                return Other(frame, "Menu", {1}, "open the menu (store preset 95)");
            return Other(frame, "Preset", {value, kPresetSet}, PresetWords(value, kPresetSet));
        case kClearPreset: return Other(frame, "Preset", {value, kPresetClear}, PresetWords(value, kPresetClear));
        case kGoToPreset: return Other(frame, "Preset", {value, kPresetGoTo}, PresetWords(value, kPresetGoTo));
        case kSetZoomSpeed: return Other(frame, "SetZoomSpeed", {value}, "zoom speed " + std::to_string(value));
        default: return false;
    }
}

// The four command bytes of a frame, as the builders' commands hold them.
inline CommandBytes ReadCommand(const uint8_t* first) { return {first[0], first[1], first[2], first[3]}; }

// Any command as the raw command that sends its four bytes.
inline void DecodeRaw(const CommandBytes& command, DecodedFrame& frame) {
    const uint32_t value = command.command1 << 24 | command.command2 << 16 | command.data1 << 8 | command.data2;
    Describe(frame, "RawCommand", {static_cast<int>(value)}, FrameKind::kOther, RawWords(value));
}

}  // namespace pelco
}  // namespace vorna
