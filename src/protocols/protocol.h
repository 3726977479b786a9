// The camera protocol interface: one object per protocol name turns PTZ
// operations into the exact bytes a camera expects on its serial line.
#pragma once

#include <cstdint>
#include <string>

namespace vorna {

// Command bytes: a binary-safe byte buffer. Empty means "this protocol has no
// such command"; callers test emptiness and never compare contents.
using Bytes = std::string;

// Speeds handed to Pan, Tilt, Zoom and Move are signed: the magnitude is the
// configured speed + 1 (so 0 always means the axis stands still), the sign is
// the direction (pan + right, tilt + up, zoom + in). Iris +1 opens, focus +1
// goes near. Builders never fail and never range-check: every value is written
// into its field as given, truncated to the field's width.
//
// The virtual operations stand in the interface's slot order.
class CProtocol {
public:
    virtual ~CProtocol();

    virtual int GetPresetCount() const = 0;
    virtual int GetMinAddress() const = 0;
    virtual int GetMaxAddress() const = 0;
    virtual bool ShouldRepeat(int64_t now, int64_t sinceLastCommand) const = 0;
    virtual int GetRepeatCount(int opcode) const;
    virtual int GetMenuType() const;
    virtual bool HasMenuMode() const;
    virtual int GetDelay() const;
    virtual int GetPatternType() const;
    // The probes build the command for address 1 with argument 1 and report
    // whether anything came out.
    virtual bool CanAutoFocus();
    virtual bool CanAutoIris();
    virtual bool CanFlip();
    virtual bool CanApplePeel();
    virtual int GetCommandInterval() const;
    virtual Bytes PassThrough(uint32_t address, const Bytes& text);
    virtual Bytes StopAxes(uint32_t address, int pan, int tilt, int zoom, int iris, int focus) = 0;
    virtual Bytes Pan(uint32_t address, int speed) = 0;
    virtual Bytes Tilt(uint32_t address, int speed) = 0;
    virtual Bytes Zoom(uint32_t address, int speed) = 0;
    virtual Bytes Move(uint32_t address, int pan, int tilt, int zoom) = 0;
    virtual Bytes Preset(uint32_t address, int number, int action) = 0;
    virtual Bytes SetZoomSpeed(uint32_t address, int speed) = 0;
    virtual Bytes Iris(uint32_t address, int direction) = 0;
    virtual Bytes Focus(uint32_t address, int direction) = 0;
    virtual Bytes AutoIris(uint32_t address, int mode) = 0;
    virtual Bytes AutoFocus(uint32_t address, int mode) = 0;
    virtual Bytes RawCommand(uint32_t address, uint32_t value) = 0;
    virtual Bytes Menu(uint32_t address, int on) = 0;
    virtual Bytes MenuEnter(uint32_t address, int value) = 0;
    virtual Bytes MenuNavigate(uint32_t address, int vertical, int horizontal, int enter) = 0;
    virtual Bytes Flip(uint32_t address, int ignored) = 0;
    virtual Bytes ApplePeel(uint32_t address, int ignored) = 0;
    virtual Bytes Pattern(uint32_t address, int number, int action) = 0;
};

// Preset actions and pattern actions as the executor passes them.
enum PresetAction { kPresetSet = 0, kPresetGoTo = 1, kPresetClear = 2 };
enum PatternAction { kPatternStartRecording = 0, kPatternStopRecording = 1, kPatternAction2 = 2, kPatternRun = 3 };

}  // namespace vorna
