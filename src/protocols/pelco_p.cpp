#include "protocols/pelco_p.h"

#include "protocols/pelco_common.h"
#include "protocols/pelco_p_wire.h"

namespace vorna {

namespace {

using pelco::Low8;

using namespace pelco_p;

// Address 1 goes on the wire as 0, so address 0 wraps to 0xFF.
Bytes Frame(uint32_t address, uint32_t data1, uint32_t data2, uint32_t data3, uint32_t data4) {
    Bytes frame(kFrameSize, '\0');
    frame[kStartAt] = static_cast<char>(kStart);
    frame[kAddressAt] = static_cast<char>(Low8(address - 1));
    frame[kData1At] = static_cast<char>(Low8(data1));
    frame[kData2At] = static_cast<char>(Low8(data2));
    frame[kData3At] = static_cast<char>(Low8(data3));
    frame[kData4At] = static_cast<char>(Low8(data4));
    frame[kEndAt] = static_cast<char>(kEnd);
    frame[kChecksumAt] = static_cast<char>(Checksum(reinterpret_cast<const uint8_t*>(frame.data())));
    return frame;
}

// Extended commands leave data 1 and data 3 at zero.
Bytes Command(uint32_t address, uint8_t command, uint32_t data) { return Frame(address, 0, command, 0, data); }

Bytes LensFrame(uint32_t address, int direction, uint8_t positive, uint8_t negative) {
    return Frame(address, direction > 0 ? positive : direction < 0 ? negative : 0, 0, 0, 0);
}

}  // namespace

int CPelcoP::GetPresetCount() const { return 32; }
int CPelcoP::GetMinAddress() const { return 1; }
int CPelcoP::GetMaxAddress() const { return 31; }
bool CPelcoP::ShouldRepeat(int64_t, int64_t) const { return false; }
int CPelcoP::GetMenuType() const { return 1; }

Bytes CPelcoP::StopAxes(uint32_t, int, int, int, int, int) { return {}; }
Bytes CPelcoP::Pan(uint32_t, int) { return {}; }
Bytes CPelcoP::Tilt(uint32_t, int) { return {}; }
Bytes CPelcoP::Zoom(uint32_t, int) { return {}; }

// Zoom has no speed in the frame; it is set apart with SetZoomSpeed.
Bytes CPelcoP::Move(uint32_t address, int pan, int tilt, int zoom) {
    return Frame(address, 0, pelco::MotionBits(pan, tilt, zoom), pelco::SpeedByte(pan), pelco::SpeedByte(tilt));
}

Bytes CPelcoP::Preset(uint32_t address, int number, int action) {
    return Command(address, pelco::PresetCommand(action), number);
}

Bytes CPelcoP::SetZoomSpeed(uint32_t address, int speed) { return Command(address, pelco::kSetZoomSpeed, speed); }

Bytes CPelcoP::Iris(uint32_t address, int direction) { return LensFrame(address, direction, kIrisOpen, kIrisClose); }

Bytes CPelcoP::Focus(uint32_t address, int direction) { return LensFrame(address, direction, kFocusNear, kFocusFar); }

Bytes CPelcoP::AutoIris(uint32_t, int) { return {}; }
Bytes CPelcoP::AutoFocus(uint32_t, int) { return {}; }

// The value fills data 1 to data 4, most significant byte first.
Bytes CPelcoP::RawCommand(uint32_t address, uint32_t value) {
    return Frame(address, value >> 24, value >> 16, value >> 8, value);
}

Bytes CPelcoP::Menu(uint32_t address, int on) {
    if (on < 1) return {};
    return Preset(address, pelco::kMenuPreset, kPresetSet);
}

Bytes CPelcoP::MenuEnter(uint32_t, int) { return {}; }
Bytes CPelcoP::MenuNavigate(uint32_t, int, int, int) { return {}; }
Bytes CPelcoP::Flip(uint32_t, int) { return {}; }
Bytes CPelcoP::ApplePeel(uint32_t, int) { return {}; }
Bytes CPelcoP::Pattern(uint32_t, int, int) { return {}; }

}  // namespace vorna
