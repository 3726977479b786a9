#include "protocols/pelco_p.h"

#include "protocols/pelco_commands.h"
#include "protocols/pelco_p_wire.h"

namespace vorna {

namespace {

using pelco::CommandBytes;
using pelco::Low8;
using namespace pelco_p;

// Start, address, the command as data 1 to data 4, end, and the checksum that
// guards them all. Address 1 goes on the wire as 0, so address 0 wraps to 0xFF.
Bytes Envelope(uint32_t address, const CommandBytes& command) {
    Bytes frame(kFrameSize, '\0');
    frame[kStartAt] = static_cast<char>(kStart);
    frame[kAddressAt] = static_cast<char>(Low8(address - 1));
    frame[kData1At] = static_cast<char>(Low8(command.command1));
    frame[kData2At] = static_cast<char>(Low8(command.command2));
    frame[kData3At] = static_cast<char>(Low8(command.data1));
    frame[kData4At] = static_cast<char>(Low8(command.data2));
    frame[kEndAt] = static_cast<char>(kEnd);
    frame[kChecksumAt] = static_cast<char>(Checksum(reinterpret_cast<const uint8_t*>(frame.data())));
    return frame;
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

Bytes CPelcoP::Move(uint32_t address, int pan, int tilt, int zoom) {
    return Envelope(address, pelco::Move(pan, tilt, zoom));
}

Bytes CPelcoP::Preset(uint32_t address, int number, int action) {
    return Envelope(address, pelco::Preset(number, action));
}

Bytes CPelcoP::SetZoomSpeed(uint32_t address, int speed) { return Envelope(address, pelco::ZoomSpeed(speed)); }

Bytes CPelcoP::Iris(uint32_t address, int direction) {
    return Envelope(address, pelco::LensMotion(direction, kIrisOpen, kIrisClose));
}

Bytes CPelcoP::Focus(uint32_t address, int direction) {
    return Envelope(address, pelco::LensMotion(direction, kFocusNear, kFocusFar));
}

Bytes CPelcoP::AutoIris(uint32_t, int) { return {}; }
Bytes CPelcoP::AutoFocus(uint32_t, int) { return {}; }

Bytes CPelcoP::RawCommand(uint32_t address, uint32_t value) { return Envelope(address, pelco::Raw(value)); }

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
