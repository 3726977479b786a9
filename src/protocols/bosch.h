// Bosch domes. A frame is a head byte that tells the length, the camera
// address in two 7-bit halves, an opcode with its data, and a 7-bit checksum.
#pragma once

#include <cstdint>

#include "protocols/protocol.h"

namespace vorna {

// Only combined motion, presets, iris, focus and raw commands exist: every
// start and stop of an axis is a combined motion with all three speeds.
class CBosch : public CProtocol {
public:
    int GetPresetCount() const override;
    int GetMinAddress() const override;
    int GetMaxAddress() const override;
    bool ShouldRepeat(int64_t now, int64_t sinceLastCommand) const override;
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
    Bytes Menu(uint32_t address, int on) override;
    Bytes MenuEnter(uint32_t address, int value) override;
    Bytes MenuNavigate(uint32_t address, int vertical, int horizontal, int enter) override;
    Bytes Flip(uint32_t address, int ignored) override;
    Bytes ApplePeel(uint32_t address, int ignored) override;
    Bytes Pattern(uint32_t address, int number, int action) override;
};

}  // namespace vorna
