#include "protocols/panasonic.h"

#include <cstdio>
#include <string>

#include "protocols/axis_speed.h"
#include "protocols/panasonic_wire.h"

namespace vorna {

namespace {

using namespace panasonic;

// Upper-case hex with at least `digits` digits; a number with more digits is
// written whole, making the frame longer.
std::string HexNumber(uint32_t value, int digits) {
    char text[16];
    std::snprintf(text, sizeof text, "%0*X", digits, value);
    return text;
}

// The address is written in decimal with at least two digits, whatever its
// size.
Bytes Frame(uint32_t address, const std::string& command) {
    char head[32];
    std::snprintf(head, sizeof head, "%cAD%02d;GC7:", kStx, static_cast<int32_t>(address));
    return head + command + kEtx;
}

int Sign(int value) { return (value > 0) - (value < 0); }

// Zoom in has speeds 0 to 3, zoom out 4 to 7; only the lowest two bits of
// the magnitude count.
uint32_t ZoomNibble(int zoom) {
    if (zoom == 0) return kZoomStill;
    return ((SpeedMagnitude(zoom) - 1) & 3) + (zoom < 0 ? kZoomOutSpeeds : 0);
}

uint32_t DirectionNibble(int pan, int tilt) { return kDirections[Sign(pan) + 1][Sign(tilt) + 1]; }

// Sixteen speeds, four magnitudes to a step; larger magnitudes wrap.
uint32_t SpeedNibble(int speed) {
    if (speed == 0) return 0;
    return ((SpeedMagnitude(speed) - 1) >> 2) & 0xF;
}

}  // namespace

int CPanasonic::GetPresetCount() const { return 64; }
int CPanasonic::GetMinAddress() const { return 0; }
int CPanasonic::GetMaxAddress() const { return 96; }
bool CPanasonic::ShouldRepeat(int64_t, int64_t) const { return true; }
int CPanasonic::GetMenuType() const { return 3; }
bool CPanasonic::HasMenuMode() const { return true; }
int CPanasonic::GetPatternType() const { return 1; }

Bytes CPanasonic::StopAxes(uint32_t, int, int, int, int, int) { return {}; }
Bytes CPanasonic::Pan(uint32_t, int) { return {}; }
Bytes CPanasonic::Tilt(uint32_t, int) { return {}; }
Bytes CPanasonic::Zoom(uint32_t, int) { return {}; }

// One 16-bit number, a nibble each from the top: zoom, direction, pan speed,
// tilt speed.
Bytes CPanasonic::Move(uint32_t address, int pan, int tilt, int zoom) {
    const uint32_t motion =
        ZoomNibble(zoom) << 12 | DirectionNibble(pan, tilt) << 8 | SpeedNibble(pan) << 4 | SpeedNibble(tilt);
    return Frame(address, kMovePrefix + HexNumber(motion, 4));
}

// The preset code is 32-bit arithmetic: recalling preset 0 writes -1 as
// eight hex digits.
Bytes CPanasonic::Preset(uint32_t address, int number, int action) {
    uint32_t offset;
    switch (action) {
        case kPresetSet: offset = kStoredPresetOffset; break;
        case kPresetGoTo: offset = kRecalledPresetOffset; break;
        default: return {};
    }
    return Frame(address, kPresetPrefix + HexNumber(static_cast<uint32_t>(number) + offset, 2));
}

Bytes CPanasonic::SetZoomSpeed(uint32_t, int) { return {}; }

Bytes CPanasonic::Iris(uint32_t address, int direction) {
    const uint32_t code = direction > 0 ? kIrisOpen : direction < 0 ? kIrisClose : kIrisStop;
    return Frame(address, kIrisPrefix + HexNumber(code, 4));
}

Bytes CPanasonic::Focus(uint32_t address, int direction) {
    const uint32_t code = direction > 0 ? kFocusNear : direction < 0 ? kFocusFar : kFocusStop;
    return Frame(address, kFocusPrefix + HexNumber(code, 1));
}

Bytes CPanasonic::AutoIris(uint32_t address, int mode) {
    return Frame(address, mode != 0 ? kAutoIrisOn : kAutoIrisOff) + Frame(address, kAutoIrisFollowUp);
}

Bytes CPanasonic::AutoFocus(uint32_t address, int mode) {
    if (mode == 0) return Frame(address, kAutoFocusOff);
    return Frame(address, kAutoFocusOn) + Move(address, 0, 0, 0);
}

Bytes CPanasonic::RawCommand(uint32_t address, uint32_t value) { return Frame(address, HexNumber(value, 7)); }

Bytes CPanasonic::Menu(uint32_t address, int on) { return Frame(address, on != 0 ? kMenuOpen : kMenuClose); }

Bytes CPanasonic::MenuEnter(uint32_t, int) { return {}; }

Bytes CPanasonic::MenuNavigate(uint32_t address, int vertical, int horizontal, int enter) {
    if (vertical != 0) return Frame(address, vertical > 0 ? kMenuUp : kMenuDown);
    if (horizontal != 0) return Frame(address, horizontal > 0 ? kMenuRight : kMenuLeft);
    if (enter > 0) return Frame(address, kMenuEnter);
    return {};
}

Bytes CPanasonic::Flip(uint32_t address, int) { return Frame(address, kFlip); }

Bytes CPanasonic::ApplePeel(uint32_t, int) { return {}; }

Bytes CPanasonic::Pattern(uint32_t address, int, int action) {
    switch (action) {
        case kPatternStartRecording: return Frame(address, kStartRecordingPattern);
        case kPatternStopRecording: return Frame(address, kStopRecordingPattern);
        case kPatternRun: return Frame(address, kRunPattern);
        default: return {};
    }
}

}  // namespace vorna
