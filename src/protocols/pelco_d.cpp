#include "protocols/pelco_d.h"

#include "protocols/pelco_common.h"
#include "protocols/pelco_d_wire.h"

namespace vorna {

namespace {

using pelco::Low8;
using namespace pelco_d;

Bytes Frame(uint32_t address, uint32_t command1, uint32_t command2, uint32_t data1, uint32_t data2) {
    Bytes frame(kFrameSize, '\0');
    frame[kSyncAt] = static_cast<char>(kSync);
    frame[kAddressAt] = static_cast<char>(Low8(address));
    frame[kCommand1At] = static_cast<char>(Low8(command1));
    frame[kCommand2At] = static_cast<char>(Low8(command2));
    frame[kData1At] = static_cast<char>(Low8(data1));
    frame[kData2At] = static_cast<char>(Low8(data2));
    frame[kChecksumAt] = static_cast<char>(Checksum(reinterpret_cast<const uint8_t*>(frame.data())));
    return frame;
}

// Extended commands leave command 1 and data 1 at zero.
Bytes Command(uint32_t address, uint8_t command, uint32_t data) { return Frame(address, 0, command, 0, data); }

}  // namespace

int CPelcoD::GetPresetCount() const { return 32; }
int CPelcoD::GetMinAddress() const { return 0; }
int CPelcoD::GetMaxAddress() const { return 255; }
bool CPelcoD::ShouldRepeat(int64_t, int64_t) const { return false; }
int CPelcoD::GetMenuType() const { return 1; }
int CPelcoD::GetPatternType() const { return 1; }

Bytes CPelcoD::StopAxes(uint32_t, int, int, int, int, int) { return {}; }
Bytes CPelcoD::Pan(uint32_t, int) { return {}; }
Bytes CPelcoD::Tilt(uint32_t, int) { return {}; }
Bytes CPelcoD::Zoom(uint32_t, int) { return {}; }

// Zoom has no speed in the frame; it is set apart with SetZoomSpeed.
Bytes CPelcoD::Move(uint32_t address, int pan, int tilt, int zoom) {
    return Frame(address, 0, pelco::MotionBits(pan, tilt, zoom), pelco::SpeedByte(pan), pelco::SpeedByte(tilt));
}

Bytes CPelcoD::Preset(uint32_t address, int number, int action) {
    return Command(address, pelco::PresetCommand(action), number);
}

Bytes CPelcoD::SetZoomSpeed(uint32_t address, int speed) { return Command(address, pelco::kSetZoomSpeed, speed); }

Bytes CPelcoD::Iris(uint32_t address, int direction) {
    const uint8_t command1 = direction > 0 ? kIrisOpen : direction < 0 ? kIrisClose : 0;
    return Frame(address, command1, 0, 0, 0);
}

// Near is a command 1 bit, far a command 2 bit.
Bytes CPelcoD::Focus(uint32_t address, int direction) {
    if (direction > 0) return Frame(address, kFocusNear, 0, 0, 0);
    if (direction < 0) return Frame(address, 0, kFocusFar, 0, 0);
    return Frame(address, 0, 0, 0, 0);
}

Bytes CPelcoD::AutoIris(uint32_t address, int mode) {
    if (mode == 0) return Command(address, kAutoIris, kAutoOff);
    return Command(address, kAutoIris, kAutoOn) + Command(address, kAutoIrisFollowUp, kAutoIrisFollowUpData);
}

Bytes CPelcoD::AutoFocus(uint32_t address, int mode) {
    return Command(address, kAutoFocus, mode != 0 ? kAutoOn : kAutoOff);
}

// The value fills command 1 to data 2, most significant byte first.
Bytes CPelcoD::RawCommand(uint32_t address, uint32_t value) {
    return Frame(address, value >> 24, value >> 16, value >> 8, value);
}

Bytes CPelcoD::Menu(uint32_t address, int on) {
    if (on < 1) return {};
    return Preset(address, pelco::kMenuPreset, kPresetSet);
}

Bytes CPelcoD::MenuEnter(uint32_t address, int) { return Iris(address, 1); }

Bytes CPelcoD::MenuNavigate(uint32_t, int, int, int) { return {}; }

Bytes CPelcoD::Flip(uint32_t address, int) { return Command(address, pelco::kGoToPreset, kFlipPreset); }

Bytes CPelcoD::ApplePeel(uint32_t, int) { return {}; }

// Stop recording names no pattern.
Bytes CPelcoD::Pattern(uint32_t address, int number, int action) {
    switch (action) {
        case kPatternStartRecording: return Command(address, kStartRecordingPattern, number);
        case kPatternStopRecording: return Command(address, kStopRecordingPattern, 0);
        case kPatternRun: return Command(address, kRunPattern, number);
        default: return {};
    }
}

int CHSDPelcoD::GetMenuType() const { return 3; }
int CHSDPelcoD::GetPatternType() const { return 3; }

Bytes CHSDPelcoD::Menu(uint32_t address, int on) {
    if (on >= 1) return Preset(address, kHsdMenuPreset, kPresetGoTo);
    return Iris(address, -1) + Iris(address, 0);
}

// The pan nudge at the lowest speed comes first, then the pattern's preset.
Bytes CHSDPelcoD::Pattern(uint32_t address, int number, int action) {
    if (action != kPatternRun || number < 0 || number >= GetPatternType()) return {};
    return Move(address, 1, 0, 0) + Preset(address, kHsdFirstPatternPreset + number, kPresetGoTo);
}

}  // namespace vorna
