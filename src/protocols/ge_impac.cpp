#include "protocols/ge_impac.h"

#include <initializer_list>

#include "protocols/axis_speed.h"
#include "protocols/ge_impac_wire.h"

namespace vorna {

namespace {

using namespace ge_impac;

// 0xFF, count, body, checksum. The count covers the body and the checksum;
// the checksum is the two's complement of the sum of count and body.
Bytes Frame(std::initializer_list<uint32_t> body) {
    const uint32_t count = static_cast<uint32_t>(body.size()) + 1;
    Bytes frame{static_cast<char>(kStart), static_cast<char>(count)};
    for (uint32_t field : body) frame += static_cast<char>(field);
    return frame + static_cast<char>(Checksum(reinterpret_cast<const uint8_t*>(frame.data()), frame.size()));
}

// FF 07 20 key 80 00 address 00 checksum
Bytes LensKeyFrame(uint32_t address, char key) {
    return Frame({kLensKeyClass, static_cast<uint8_t>(key), kLensKeyFlag, 0x00, address, 0x00});
}

// The key for the direction; nothing for direction 0.
Bytes LensKeyFrame(uint32_t address, const KeyPair& keys, int direction) {
    if (direction == 0) return {};
    return LensKeyFrame(address, direction < 0 ? keys.negative : keys.positive);
}

// FF 07 09 code 00 00 address (number - 1) checksum
Bytes PresetFrame(uint32_t address, uint8_t code, int number) {
    return Frame({kCameraClass, code, 0x00, 0x00, address, static_cast<uint32_t>(number) - 1u});
}

// FF 09 09 14 00 00 address pan tilt zoom checksum
Bytes MoveFrame(uint32_t address, uint32_t pan, uint32_t tilt, uint32_t zoom) {
    return Frame({kCameraClass, kMoveCode, 0x00, 0x00, address, pan, tilt, zoom});
}

// A still axis is 0x00; otherwise the speed, plus the top bit for right, up
// or in. Nothing is clamped: a speed past 0x7F runs into the top bit.
uint32_t SpeedByte(int motion, uint32_t speed) {
    if (motion == 0) return 0;
    return motion > 0 ? speed + kPositiveDirection : speed;
}

// Pan and tilt run at half the magnitude, at least 1.
uint32_t PanTiltSpeed(int motion) {
    const uint32_t half = SpeedMagnitude(motion) / 2;
    return half > 1 ? half : 1;
}

uint32_t ZoomSpeed(int motion) { return 8 * SpeedMagnitude(motion); }

}  // namespace

int CGEImpac::GetPresetCount() const { return 32; }
int CGEImpac::GetMinAddress() const { return 0; }
int CGEImpac::GetMaxAddress() const { return 253; }
bool CGEImpac::ShouldRepeat(int64_t, int64_t) const { return false; }

// Only the lens has stop keys: iris first, then focus. Pan, tilt and zoom
// stop through a move frame with their speed 0.
Bytes CGEImpac::StopAxes(uint32_t address, int, int, int, int iris, int focus) {
    return LensKeyFrame(address, kStopIrisKeys, iris) + LensKeyFrame(address, kStopFocusKeys, focus);
}

Bytes CGEImpac::Pan(uint32_t, int) { return {}; }
Bytes CGEImpac::Tilt(uint32_t, int) { return {}; }
Bytes CGEImpac::Zoom(uint32_t, int) { return {}; }

// Always a frame: with all three axes still it stops the camera.
Bytes CGEImpac::Move(uint32_t address, int pan, int tilt, int zoom) {
    return MoveFrame(address, SpeedByte(pan, PanTiltSpeed(pan)), SpeedByte(tilt, PanTiltSpeed(tilt)),
                     SpeedByte(zoom, ZoomSpeed(zoom)));
}

// Presets can be set and recalled, not cleared.
Bytes CGEImpac::Preset(uint32_t address, int number, int action) {
    if (action == kPresetSet) return PresetFrame(address, kPresetSetCode, number);
    if (action == kPresetGoTo) return PresetFrame(address, kPresetGoToCode, number);
    return {};
}

Bytes CGEImpac::SetZoomSpeed(uint32_t, int) { return {}; }

Bytes CGEImpac::Iris(uint32_t address, int direction) { return LensKeyFrame(address, kIrisKeys, direction); }

Bytes CGEImpac::Focus(uint32_t address, int direction) { return LensKeyFrame(address, kFocusKeys, direction); }

Bytes CGEImpac::AutoIris(uint32_t, int) { return {}; }
Bytes CGEImpac::AutoFocus(uint32_t, int) { return {}; }
Bytes CGEImpac::RawCommand(uint32_t, uint32_t) { return {}; }
Bytes CGEImpac::Menu(uint32_t, int) { return {}; }
Bytes CGEImpac::MenuEnter(uint32_t, int) { return {}; }
Bytes CGEImpac::MenuNavigate(uint32_t, int, int, int) { return {}; }
Bytes CGEImpac::Flip(uint32_t, int) { return {}; }
Bytes CGEImpac::ApplePeel(uint32_t, int) { return {}; }
Bytes CGEImpac::Pattern(uint32_t, int, int) { return {}; }

}  // namespace vorna
