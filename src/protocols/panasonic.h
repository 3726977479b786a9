// Panasonic domes: ASCII frames STX "AD<address>;GC7:<command>" ETX, where
// the command is normally seven characters. The dome stops when commands
// cease, so every command is repeated while it lasts.
#pragma once

#include <cstdint>

#include "protocols/protocol.h"

namespace vorna {

// While the dome's menu is open, motion keys navigate the menu instead.
class CPanasonic : public CProtocol {
public:
    int GetPresetCount() const override;
    int GetMinAddress() const override;
    int GetMaxAddress() const override;
    bool ShouldRepeat(int64_t now, int64_t sinceLastCommand) const override;
    int GetMenuType() const override;
    bool HasMenuMode() const override;
    int GetPatternType() const override;
    Bytes StopAxes(uint32_t address, int pan, int tilt, int zoom, int iris, int focus) override;
    Bytes Pan(uint32_t address, int speed) override;
    Bytes Tilt(uint32_t address, int speed) override;
    Bytes Zoom(uint32_t address, int speed) override;
    Bytes Move(uint32_t address, int pan, int tilt, int zoom) override;
    // Presets can be stored and recalled but not cleared.
    Bytes Preset(uint32_t address, int number, int action) override;
    Bytes SetZoomSpeed(uint32_t address, int speed) override;
    Bytes Iris(uint32_t address, int direction) override;
    Bytes Focus(uint32_t address, int direction) override;
    Bytes AutoIris(uint32_t address, int mode) override;
    // Switching auto focus on also stops all motion.
    Bytes AutoFocus(uint32_t address, int mode) override;
    Bytes RawCommand(uint32_t address, uint32_t value) override;
    Bytes Menu(uint32_t address, int on) override;
    Bytes MenuEnter(uint32_t address, int value) override;
    // Vertical wins over horizontal, horizontal over enter.
    Bytes MenuNavigate(uint32_t address, int vertical, int horizontal, int enter) override;
    Bytes Flip(uint32_t address, int ignored) override;
    Bytes ApplePeel(uint32_t address, int ignored) override;
    // The dome has a single pattern, so the number is not sent.
    Bytes Pattern(uint32_t address, int number, int action) override;
};

}  // namespace vorna
