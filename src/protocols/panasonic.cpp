#include "protocols/panasonic.h"

#include <cstdio>
#include <string>

#include "protocols/axis_speed.h"

namespace vorna {

namespace {

constexpr char kStx = 0x02;
constexpr char kEtx = 0x03;

const char kAutoIrisOn[] = "0021032";
const char kAutoIrisOff[] = "0021034";
const char kAutoIrisFollowUp[] = "0021005";
const char kAutoFocusOn[] = "9030055";
const char kAutoFocusOff[] = "9030056";
const char kMenuOpen[] = "0021940";
const char kMenuClose[] = "0021941";
const char kMenuUp[] = "0021942";
const char kMenuRight[] = "0021943";
const char kMenuDown[] = "0021944";
const char kMenuLeft[] = "0021945";
const char kMenuEnter[] = "002194A";
const char kFlip[] = "20213D1";
const char kStartRecordingPattern[] = "2021494";
const char kStopRecordingPattern[] = "2021491";
const char kRunPattern[] = "2021490";

// Command prefixes followed by a number in hex.
const char kMovePrefix[] = "902";
const char kPresetPrefix[] = "90300";
const char kIrisPrefix[] = "002";
const char kFocusPrefix[] = "903400";

// The iris command's number for open, close and stop.
constexpr uint32_t kIrisOpen = 0x1002;
constexpr uint32_t kIrisClose = 0x1003;
constexpr uint32_t kIrisStop = 0x1004;

// The focus command's digit for near, far and stop.
constexpr uint32_t kFocusNear = 0x0;
constexpr uint32_t kFocusFar = 0x4;
constexpr uint32_t kFocusStop = 0x8;

// Stored presets are numbered 99 above the recalled ones, which start at 0
// for preset 1.
constexpr uint32_t kStoredPresetOffset = 99;
constexpr uint32_t kRecalledPresetOffset = 0u - 1;

constexpr uint32_t kZoomStill = 0x8;
constexpr uint32_t kZoomOutSpeeds = 0x4;

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

uint32_t DirectionNibble(int pan, int tilt) {
    // Rows: pan left, still, right. Columns: tilt down, still, up.
    static const uint32_t kDirections[3][3] = {
        {0xF, 0x8, 0x9},
        {0xE, 0x1, 0xA},
        {0xD, 0xC, 0xB},
    };
    return kDirections[Sign(pan) + 1][Sign(tilt) + 1];
}

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
