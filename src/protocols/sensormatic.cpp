#include "protocols/sensormatic.h"

#include <initializer_list>

#include "protocols/axis_speed.h"
#include "protocols/sensormatic_wire.h"
#include "vorna/ptz.h"

namespace vorna {

namespace {

using namespace sensormatic;

constexpr int kGoToPresetBurst = 3;

// Writes each field as one byte (its low 8 bits) and appends the checksum
// that makes the 8-bit sum of the whole frame 0.
Bytes Frame(std::initializer_list<uint32_t> fields) {
    Bytes frame;
    for (uint32_t field : fields) frame += static_cast<char>(field);
    return frame + static_cast<char>(Checksum(reinterpret_cast<const uint8_t*>(frame.data()), frame.size()));
}

// address, command, checksum
Bytes CommandFrame(uint32_t address, uint32_t command) { return Frame({address, command}); }

// address, 0xC0, direction command, speed, checksum. The speed is the
// magnitude the executor passes (configured speed + 1), as it is.
Bytes SpeedFrame(uint32_t address, uint8_t direction, int speed) {
    return Frame({address, kVariableSpeed, direction, SpeedMagnitude(speed)});
}

// address, 0xC7, function, preset number - 1, checksum
Bytes PresetFrame(uint32_t address, uint8_t function, int number) {
    return Frame({address, kPreset, function, static_cast<uint32_t>(number) - 1u});
}

// address, 0xCC, function, checksum
Bytes SpecialFrame(uint32_t address, uint32_t function) { return Frame({address, kSpecialFunction, function}); }

// Auto iris and auto focus share one special function, sent for any mode
// but 0 (off), which has no frame.
Bytes LensAutoFrame(uint32_t address, int mode) {
    if (mode == 0) return {};
    return SpecialFrame(address, kLensAuto);
}

uint32_t PatternCommand(int number, int action) {
    switch (action) {
        case kPatternStartRecording: return kRecordPatternBase + static_cast<uint32_t>(number);
        case kPatternStopRecording: return kStopRecording;
        case kPatternAction2: return kPatternAction2Command;
        case kPatternRun: return kRunPatternBase + static_cast<uint32_t>(number);
        default: return kUnknownPatternAction;
    }
}

}  // namespace

int CSensormatic::GetPresetCount() const { return 96; }
int CSensormatic::GetMinAddress() const { return 1; }
int CSensormatic::GetMaxAddress() const { return 99; }
bool CSensormatic::ShouldRepeat(int64_t, int64_t) const { return false; }

int CSensormatic::GetRepeatCount(int opcode) const { return opcode == VORNA_OP_GO_TO_PRESET ? kGoToPresetBurst : 0; }

int CSensormatic::GetMenuType() const { return 3; }
int CSensormatic::GetPatternType() const { return 0x80003; }

// The first moving axis in the order pan, tilt, zoom, iris, focus is stopped.
Bytes CSensormatic::StopAxes(uint32_t address, int pan, int tilt, int zoom, int iris, int focus) {
    if (pan != 0) return CommandFrame(address, kPanStop);
    if (tilt != 0) return CommandFrame(address, kTiltStop);
    if (zoom != 0) return CommandFrame(address, kZoomStop);
    if (iris != 0) return CommandFrame(address, kIrisStop);
    if (focus != 0) return CommandFrame(address, kFocusStop);
    return {};
}

Bytes CSensormatic::Pan(uint32_t address, int speed) {
    if (speed == 0) return StopAxes(address, 1, 0, 0, 0, 0);
    return SpeedFrame(address, speed < 0 ? kPanLeft : kPanRight, speed);
}

Bytes CSensormatic::Tilt(uint32_t address, int speed) {
    if (speed == 0) return StopAxes(address, 0, 1, 0, 0, 0);
    return SpeedFrame(address, speed < 0 ? kTiltDown : kTiltUp, speed);
}

Bytes CSensormatic::Zoom(uint32_t address, int speed) {
    if (speed == 0) return CommandFrame(address, kZoomStop);
    return CommandFrame(address, speed > 0 ? kZoomIn : kZoomOut);
}

// One frame per moving axis; with every axis still there is nothing to send.
Bytes CSensormatic::Move(uint32_t address, int pan, int tilt, int zoom) {
    Bytes frames;
    if (pan != 0) frames += Pan(address, pan);
    if (tilt != 0) frames += Tilt(address, tilt);
    if (zoom != 0) frames += Zoom(address, zoom);
    return frames;
}

// Clearing sends the same store frame as setting.
Bytes CSensormatic::Preset(uint32_t address, int number, int action) {
    return PresetFrame(address, action == kPresetGoTo ? kPresetFunctionGoTo : kPresetFunctionStore, number);
}

Bytes CSensormatic::SetZoomSpeed(uint32_t, int) { return {}; }

// Direction 0 opens, like +1.
Bytes CSensormatic::Iris(uint32_t address, int direction) {
    return CommandFrame(address, direction < 0 ? kIrisClose : kIrisOpen);
}

// Direction 0 focuses near, like +1.
Bytes CSensormatic::Focus(uint32_t address, int direction) {
    return CommandFrame(address, direction < 0 ? kFocusFar : kFocusNear);
}

Bytes CSensormatic::AutoIris(uint32_t address, int mode) { return LensAutoFrame(address, mode); }

Bytes CSensormatic::AutoFocus(uint32_t address, int mode) { return LensAutoFrame(address, mode); }

// The top byte is the command; a special function takes the next byte as
// its function. The low 16 bits are never sent.
Bytes CSensormatic::RawCommand(uint32_t address, uint32_t value) {
    const uint32_t command = value >> 24;
    if (command == kSpecialFunction) return SpecialFrame(address, value >> 16);
    return CommandFrame(address, command);
}

Bytes CSensormatic::Menu(uint32_t address, int on) { return SpecialFrame(address, on >= 1 ? kMenuOpen : kMenuClose); }

// A menu item is selected with the focus-far command.
Bytes CSensormatic::MenuEnter(uint32_t address, int) { return Focus(address, -1); }

Bytes CSensormatic::MenuNavigate(uint32_t, int, int, int) { return {}; }

Bytes CSensormatic::Flip(uint32_t address, int) { return SpecialFrame(address, kFlip); }

Bytes CSensormatic::ApplePeel(uint32_t address, int) { return CommandFrame(address, kApplePeel); }

Bytes CSensormatic::Pattern(uint32_t address, int number, int action) {
    return CommandFrame(address, PatternCommand(number, action));
}

}  // namespace vorna
