// Pelco-D: seven-byte binary frames (sync 0xFF, address, two command bytes,
// two data bytes, checksum). Some commands are two frames back to back.
#pragma once

#include <cstdint>

#include "protocols/protocol.h"

namespace vorna {

// Pelco-D has no separate pan, tilt or zoom commands: every motion goes out
// as one combined move of all three axes.
class CPelcoD : public CProtocol {
public:
    int GetPresetCount() const override;
    int GetMinAddress() const override;
    int GetMaxAddress() const override;
    bool ShouldRepeat(int64_t now, int64_t sinceLastCommand) const override;
    int GetMenuType() const override;
    int GetPatternType() const override;
    Bytes StopAxes(uint32_t address, int pan, int tilt, int zoom, int iris, int focus) override;
    Bytes Pan(uint32_t address, int speed) override;
    Bytes Tilt(uint32_t address, int speed) override;
    Bytes Zoom(uint32_t address, int speed) override;
    Bytes Move(uint32_t address, int pan, int tilt, int zoom) override;
    Bytes Preset(uint32_t address, int number, int action) override;
    Bytes SetZoomSpeed(uint32_t address, int speed) override;
    Bytes Iris(uint32_t address, int direction) override;
    Bytes Focus(uint32_t address, int direction) override;
    Bytes AutoIris(uint32_t address, int mode) override;
    Bytes AutoFocus(uint32_t address, int mode) override;
    Bytes RawCommand(uint32_t address, uint32_t value) override;
    // Opens the menu by storing the menu preset; there is no menu-off.
    Bytes Menu(uint32_t address, int on) override;
    // Inside the menu, iris open selects the highlighted item.
    Bytes MenuEnter(uint32_t address, int value) override;
    Bytes MenuNavigate(uint32_t address, int vertical, int horizontal, int enter) override;
    Bytes Flip(uint32_t address, int ignored) override;
    Bytes ApplePeel(uint32_t address, int ignored) override;
    Bytes Pattern(uint32_t address, int number, int action) override;
};

// HSD domes speak Pelco-D but have their own menu presets and no pattern
// commands: their three patterns are stored in presets 79 to 81 and run by
// going to those presets.
class CHSDPelcoD : public CPelcoD {
public:
    int GetMenuType() const override;
    int GetPatternType() const override;
    // Opens the menu by going to preset 90; closes it with iris close, then
    // iris stop.
    Bytes Menu(uint32_t address, int on) override;
    // Only runs patterns 0 to GetPatternType() - 1; recording is impossible.
    Bytes Pattern(uint32_t address, int number, int action) override;
};

}  // namespace vorna
