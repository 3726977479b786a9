#include "protocols/ge_ascii.h"

#include "protocols/axis_speed.h"
#include "protocols/ge_ascii_wire.h"

namespace vorna {

namespace {

using namespace ge_ascii;

char Letter(const DirectionLetters& letters, int direction) {
    return direction < 0 ? letters.negative : letters.positive;
}

// A digit is its value added to '0' with no range check: values of 10 or more
// give the characters after '9'.
char Digit(int32_t value) { return static_cast<char>(static_cast<uint32_t>(value) + '0'); }

// value tens, value ones, command, address hundreds, tens, ones, '~'. The
// address is taken as the signed number it was configured as, so the digits
// of a negative one fall below '0'.
Bytes Frame(char valueTens, char valueOnes, char command, uint32_t address) {
    const int32_t camera = static_cast<int32_t>(address);
    return {valueTens, valueOnes, command, Digit(camera / 100), Digit(camera % 100 / 10), Digit(camera % 10),
            kFrameEnd};
}

Bytes ValueFrame(int32_t value, char command, uint32_t address) {
    return Frame(Digit(value / 10), Digit(value % 10), command, address);
}

// A command that carries no value has "00" in the value field.
Bytes PlainFrame(char command, uint32_t address) { return ValueFrame(0, command, address); }

// A plain frame with the letter for the direction; nothing for direction 0.
Bytes DirectionFrame(const DirectionLetters& letters, int direction, uint32_t address) {
    if (direction == 0) return {};
    return PlainFrame(Letter(letters, direction), address);
}

// Pan and tilt run at half the magnitude less one; speeds below 2 are sent
// as 1.
int32_t PanTiltSpeed(int speed) {
    const int32_t half = static_cast<int32_t>(SpeedMagnitude(speed / 2));
    return half - 1 > 1 ? half - 1 : 1;
}

// Zoom runs at eight times the magnitude less one.
int32_t ZoomSpeed(int speed) { return static_cast<int32_t>(8u * SpeedMagnitude(speed) - 1u); }

}  // namespace

int CGEASCII::GetPresetCount() const { return 64; }
int CGEASCII::GetMinAddress() const { return 0; }
int CGEASCII::GetMaxAddress() const { return 511; }
bool CGEASCII::ShouldRepeat(int64_t, int64_t) const { return false; }

// Every moving axis gets its stop frame, focus before iris.
Bytes CGEASCII::StopAxes(uint32_t address, int pan, int tilt, int zoom, int iris, int focus) {
    return DirectionFrame(kStopPanLetters, pan, address) + DirectionFrame(kStopTiltLetters, tilt, address) +
           DirectionFrame(kStopZoomLetters, zoom, address) + DirectionFrame(kStopFocusLetters, focus, address) +
           DirectionFrame(kStopIrisLetters, iris, address);
}

Bytes CGEASCII::Pan(uint32_t, int) { return {}; }
Bytes CGEASCII::Tilt(uint32_t, int) { return {}; }
Bytes CGEASCII::Zoom(uint32_t, int) { return {}; }

Bytes CGEASCII::Move(uint32_t address, int pan, int tilt, int zoom) {
    Bytes frames;
    if (pan != 0) frames += ValueFrame(PanTiltSpeed(pan), Letter(kPanLetters, pan), address);
    if (tilt != 0) frames += ValueFrame(PanTiltSpeed(tilt), Letter(kTiltLetters, tilt), address);
    if (zoom != 0) frames += ValueFrame(ZoomSpeed(zoom), Letter(kZoomLetters, zoom), address);
    return frames;
}

// Presets can be set and recalled, not cleared.
Bytes CGEASCII::Preset(uint32_t address, int number, int action) {
    if (action == kPresetSet) return ValueFrame(number, kPresetSetLetter, address);
    if (action == kPresetGoTo) return ValueFrame(number, kPresetGoToLetter, address);
    return {};
}

Bytes CGEASCII::SetZoomSpeed(uint32_t, int) { return {}; }

Bytes CGEASCII::Iris(uint32_t address, int direction) { return DirectionFrame(kIrisLetters, direction, address); }

Bytes CGEASCII::Focus(uint32_t address, int direction) { return DirectionFrame(kFocusLetters, direction, address); }

Bytes CGEASCII::AutoIris(uint32_t, int) { return {}; }

// Auto focus can be switched on only.
Bytes CGEASCII::AutoFocus(uint32_t address, int mode) {
    if (mode == 0) return {};
    return PlainFrame(kAutoFocusOn, address);
}

// The value's three low bytes fill the value and command positions as they
// are; its top byte is dropped.
Bytes CGEASCII::RawCommand(uint32_t address, uint32_t value) {
    return Frame(static_cast<char>(value >> 16), static_cast<char>(value >> 8), static_cast<char>(value), address);
}

Bytes CGEASCII::Menu(uint32_t, int) { return {}; }
Bytes CGEASCII::MenuEnter(uint32_t, int) { return {}; }
Bytes CGEASCII::MenuNavigate(uint32_t, int, int, int) { return {}; }
Bytes CGEASCII::Flip(uint32_t, int) { return {}; }
Bytes CGEASCII::ApplePeel(uint32_t, int) { return {}; }
Bytes CGEASCII::Pattern(uint32_t, int, int) { return {}; }

}  // namespace vorna
