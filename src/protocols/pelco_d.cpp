#include "protocols/pelco_d.h"

#include "protocols/pelco_commands.h"
#include "protocols/pelco_d_wire.h"

namespace vorna {

namespace {

using pelco::CommandBytes;
using pelco::Low8;
using namespace pelco_d;

// Sync, address, the command, and the sum that guards them.
Bytes Envelope(uint32_t address, const CommandBytes& command) {
    Bytes frame(kFrameSize, '\0');
    frame[kSyncAt] = static_cast<char>(kSync);
    frame[kAddressAt] = static_cast<char>(Low8(address));
    frame[kCommand1At] = static_cast<char>(Low8(command.command1));
    frame[kCommand2At] = static_cast<char>(Low8(command.command2));
    frame[kData1At] = static_cast<char>(Low8(command.data1));
    frame[kData2At] = static_cast<char>(Low8(command.data2));
    frame[kChecksumAt] = static_cast<char>(Checksum(reinterpret_cast<const uint8_t*>(frame.data())));
    return frame;
}

Bytes Extended(uint32_t address, uint8_t command, uint32_t data) {
    return Envelope(address, pelco::Extended(command, data));
}

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

Bytes CPelcoD::Move(uint32_t address, int pan, int tilt, int zoom) {
    return Envelope(address, pelco::Move(pan, tilt, zoom));
}

Bytes CPelcoD::Preset(uint32_t address, int number, int action) {
    return Envelope(address, pelco::Preset(number, action));
}

Bytes CPelcoD::SetZoomSpeed(uint32_t address, int speed) { return Envelope(address, pelco::ZoomSpeed(speed)); }

Bytes CPelcoD::Iris(uint32_t address, int direction) {
    return Envelope(address, pelco::LensMotion(direction, kIrisOpen, kIrisClose));
}

// Near is a command 1 bit, far a command 2 bit.
Bytes CPelcoD::Focus(uint32_t address, int direction) {
    if (direction < 0) return Envelope(address, {0, kFocusFar, 0, 0});
    return Envelope(address, pelco::LensMotion(direction, kFocusNear, 0));
}

Bytes CPelcoD::AutoIris(uint32_t address, int mode) {
    if (mode == 0) return Extended(address, kAutoIris, kAutoOff);
    return Extended(address, kAutoIris, kAutoOn) + Extended(address, kAutoIrisFollowUp, kAutoIrisFollowUpData);
}

Bytes CPelcoD::AutoFocus(uint32_t address, int mode) {
    return Extended(address, kAutoFocus, mode != 0 ? kAutoOn : kAutoOff);
}

Bytes CPelcoD::RawCommand(uint32_t address, uint32_t value) { return Envelope(address, pelco::Raw(value)); }

Bytes CPelcoD::Menu(uint32_t address, int on) {
    if (on < 1) return {};
    return Preset(address, pelco::kMenuPreset, kPresetSet);
}

Bytes CPelcoD::MenuEnter(uint32_t address, int) { return Iris(address, 1); }

Bytes CPelcoD::MenuNavigate(uint32_t, int, int, int) { return {}; }

Bytes CPelcoD::Flip(uint32_t address, int) { return Extended(address, pelco::kGoToPreset, kFlipPreset); }

Bytes CPelcoD::ApplePeel(uint32_t, int) { return {}; }

// Stop recording names no pattern.
Bytes CPelcoD::Pattern(uint32_t address, int number, int action) {
    switch (action) {
        case kPatternStartRecording: return Extended(address, kStartRecordingPattern, number);
        case kPatternStopRecording: return Extended(address, kStopRecordingPattern, 0);
        case kPatternRun: return Extended(address, kRunPattern, number);
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
