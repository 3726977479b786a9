#include "protocols/bosch.h"

#include <initializer_list>

#include "protocols/axis_speed.h"
#include "protocols/bosch_wire.h"

namespace vorna {

namespace {

using namespace bosch;

// head, address high, address low, body, checksum. The address goes out
// 0-based: address 1 is 00 00, 16383 is 7F 7E. The checksum keeps the low
// 7 bits of the sum of all bytes before it.
Bytes Frame(uint32_t address, std::initializer_list<uint32_t> body) {
    const uint32_t index = address - 1u;
    Bytes frame;
    frame += static_cast<char>(body.size() == 4 ? kHeadFourBytes : kHeadThreeBytes);
    frame += static_cast<char>(index >> 7);
    frame += static_cast<char>(index & 0x7F);
    for (uint32_t field : body) frame += static_cast<char>(field);
    return frame + static_cast<char>(Checksum(reinterpret_cast<const uint8_t*>(frame.data()), frame.size()));
}

// 0x87, hi, lo, 0x05, speeds, pan speed and lens, directions, checksum
Bytes ControlFrame(uint32_t address, uint32_t speeds, uint32_t panSpeed, uint32_t directions) {
    return Frame(address, {kControl, speeds, panSpeed, directions});
}

// Pan and tilt run at a quarter of the magnitude less one, at least 1:
// magnitudes 1 to 11 give 1, 64 gives 15.
uint32_t PanTiltSpeed(int speed) {
    const uint32_t quarter = SpeedMagnitude(speed) >> 2;
    return quarter > 1 ? quarter - 1 : 1;
}

// Magnitude 1 gives 1, 8 gives 15; larger magnitudes wrap into the next bits.
uint32_t ZoomSpeedNibble(int speed) { return (2 * SpeedMagnitude(speed) - 1) << 4; }

}  // namespace

int CBosch::GetPresetCount() const { return 99; }
int CBosch::GetMinAddress() const { return 1; }
int CBosch::GetMaxAddress() const { return 16383; }
bool CBosch::ShouldRepeat(int64_t, int64_t) const { return false; }

Bytes CBosch::StopAxes(uint32_t, int, int, int, int, int) { return {}; }
Bytes CBosch::Pan(uint32_t, int) { return {}; }
Bytes CBosch::Tilt(uint32_t, int) { return {}; }
Bytes CBosch::Zoom(uint32_t, int) { return {}; }

// Every axis not named stands still, so all three 0 stops the camera.
Bytes CBosch::Move(uint32_t address, int pan, int tilt, int zoom) {
    uint32_t speeds = 0;
    uint32_t panSpeed = 0;
    uint32_t directions = 0;
    if (pan != 0) {
        panSpeed = PanTiltSpeed(pan) << 3;
        directions |= pan > 0 ? kPanRight : kPanLeft;
    }
    if (tilt != 0) {
        speeds = PanTiltSpeed(tilt);
        directions |= tilt > 0 ? kTiltUp : kTiltDown;
    }
    if (zoom != 0) {
        speeds += ZoomSpeedNibble(zoom);
        directions |= zoom > 0 ? kZoomIn : kZoomOut;
    }
    return ControlFrame(address, speeds, panSpeed, directions);
}

// Presets can be stored and recalled, not cleared.
Bytes CBosch::Preset(uint32_t address, int number, int action) {
    uint32_t function;
    if (action == kPresetSet) {
        function = kPresetFunctionStore;
    } else if (action == kPresetGoTo) {
        function = kPresetFunctionGoTo;
    } else {
        return {};
    }
    const uint32_t preset = static_cast<uint32_t>(number);
    return Frame(address, {kPreset, ((preset >> 7) << 4) + function, preset & 0x7F});
}

Bytes CBosch::SetZoomSpeed(uint32_t, int) { return {}; }

// Direction 0 sends the control frame with the lens at rest.
Bytes CBosch::Iris(uint32_t address, int direction) {
    const uint32_t lens = direction > 0 ? kIrisOpen : direction < 0 ? kIrisClose : 0;
    return ControlFrame(address, 0, lens, 0);
}

// Focus far is a bit in byte 5, focus near one in byte 6.
Bytes CBosch::Focus(uint32_t address, int direction) {
    return ControlFrame(address, 0, direction < 0 ? kFocusFar : 0, direction > 0 ? kFocusNear : 0);
}

Bytes CBosch::AutoIris(uint32_t, int) { return {}; }
Bytes CBosch::AutoFocus(uint32_t, int) { return {}; }

// The value's low bytes are the opcode and data of the frame. Opcodes 0x05
// and 0x08 take all four bytes; any other value sends its low three bytes in
// a short frame followed by a zero byte, so both kinds are eight bytes long.
Bytes CBosch::RawCommand(uint32_t address, uint32_t value) {
    const uint32_t opcode = value >> 24;
    if (opcode == kRawLongOpcodeA || opcode == kRawLongOpcodeB) {
        return Frame(address, {opcode, value >> 16, value >> 8, value});
    }
    return Frame(address, {value >> 16, value >> 8, value}) + '\0';
}

Bytes CBosch::Menu(uint32_t, int) { return {}; }
Bytes CBosch::MenuEnter(uint32_t, int) { return {}; }
Bytes CBosch::MenuNavigate(uint32_t, int, int, int) { return {}; }
Bytes CBosch::Flip(uint32_t, int) { return {}; }
Bytes CBosch::ApplePeel(uint32_t, int) { return {}; }
Bytes CBosch::Pattern(uint32_t, int, int) { return {}; }

}  // namespace vorna
