// Pelco-P: eight-byte binary frames (start 0xA0, address, four data bytes,
// end 0xAF, XOR checksum). The wire address is one less than the camera's
// configured address.
#pragma once

#include <cstdint>

#include "protocols/protocol.h"

namespace vorna {

// Every motion goes out as one combined move of all three axes; there are no
// auto lens, flip or pattern commands.
class CPelcoP : public CProtocol {
public:
    int GetPresetCount() const override;
    int GetMinAddress() const override;
    int GetMaxAddress() const override;
    bool ShouldRepeat(int64_t now, int64_t sinceLastCommand) const override;
    int GetMenuType() const override;
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
    Bytes MenuEnter(uint32_t address, int value) override;
    Bytes MenuNavigate(uint32_t address, int vertical, int horizontal, int enter) override;
    Bytes Flip(uint32_t address, int ignored) override;
    Bytes ApplePeel(uint32_t address, int ignored) override;
    Bytes Pattern(uint32_t address, int number, int action) override;
};

}  // namespace vorna
