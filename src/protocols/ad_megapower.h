// Cameras behind an American Dynamics MegaPower matrix switcher, driven by its
// ASCII keyboard protocol. A command first selects a monitor and a camera on a
// keyboard channel ("6Ma12#a": monitor 6, camera 12, channel a) and then
// presses keys on that channel; every key sequence ends in the channel letter.
#pragma once

#include <cstdint>
#include <vector>

#include "protocols/protocol.h"

namespace vorna {

// One camera selected on a keyboard channel of a multi-mode switcher object.
struct AdChannel {
    uint32_t address;
    uint32_t channel;  // 0 to 3, letters 'a' to 'd'
};

// Shared by both switcher models. Without multi mode every command selects
// its camera on channel a of monitor 6. In multi mode up to four cameras keep
// a channel (and monitor 1 to 4) of their own, so a camera that is still
// selected gets its keys without the selection in front.
//
// Not thread-safe: building a command may change the channel table.
class CAdMPBase : public CProtocol {
public:
    explicit CAdMPBase(bool multi);

    bool multi() const { return multi_; }
    // Least recently used first; stays empty without multi mode.
    const std::vector<AdChannel>& channels() const { return channels_; }

    int GetPresetCount() const override;
    int GetMinAddress() const override;
    int GetPatternType() const override;
    // Every switcher can do these, so there is nothing to probe.
    bool CanAutoFocus() override;
    bool CanAutoIris() override;
    bool CanFlip() override;
    bool CanApplePeel() override;
    Bytes PassThrough(uint32_t address, const Bytes& text) override;
    Bytes Preset(uint32_t address, int number, int action) override;
    Bytes SetZoomSpeed(uint32_t address, int speed) override;
    Bytes AutoIris(uint32_t address, int mode) override;
    Bytes AutoFocus(uint32_t address, int mode) override;
    Bytes RawCommand(uint32_t address, uint32_t value) override;
    Bytes Menu(uint32_t address, int on) override;
    Bytes MenuEnter(uint32_t address, int value) override;
    Bytes MenuNavigate(uint32_t address, int vertical, int horizontal, int enter) override;
    Bytes Flip(uint32_t address, int ignored) override;
    Bytes ApplePeel(uint32_t address, int ignored) override;
    Bytes Pattern(uint32_t address, int number, int action) override;

protected:
    // Whether a command makes its camera the most recently used one.
    enum class Refresh { kKeepOrder, kMostRecent };

    // Ends `keys` with the camera's channel letter and, unless the camera is
    // already selected on its channel, puts the selection in front. Empty keys
    // stay empty and touch nothing.
    Bytes OnChannel(uint32_t address, Bytes keys, Refresh refresh);
    // The key for the direction's sign on the camera's channel; nothing for
    // direction 0.
    Bytes DirectionKey(uint32_t address, int direction, const char* negative, const char* positive);

private:
    struct Lookup {
        uint32_t channel;
        bool needsSelection;
    };

    Lookup FindChannel(uint32_t address, Refresh refresh);
    Bytes Selection(uint32_t address, uint32_t channel) const;

    const bool multi_;
    std::vector<AdChannel> channels_;
};

// The MegaPower 3200 moves only through combined motion keys and wants them
// repeated while the motion lasts.
class CAdM3200 : public CAdMPBase {
public:
    using CAdMPBase::CAdMPBase;

    int GetMaxAddress() const override;
    bool ShouldRepeat(int64_t now, int64_t sinceLastCommand) const override;
    int GetCommandInterval() const override;
    Bytes StopAxes(uint32_t address, int pan, int tilt, int zoom, int iris, int focus) override;
    Bytes Pan(uint32_t address, int speed) override;
    Bytes Tilt(uint32_t address, int speed) override;
    Bytes Zoom(uint32_t address, int speed) override;
    Bytes Move(uint32_t address, int pan, int tilt, int zoom) override;
    Bytes Iris(uint32_t address, int direction) override;
    Bytes Focus(uint32_t address, int direction) override;
};

// The MegaPower 48 moves one axis per command and stops pan and tilt with a
// speed-0 key; only its lens has stop keys of its own.
class CAdMp48 : public CAdMPBase {
public:
    using CAdMPBase::CAdMPBase;

    int GetMaxAddress() const override;
    bool ShouldRepeat(int64_t now, int64_t sinceLastCommand) const override;
    Bytes StopAxes(uint32_t address, int pan, int tilt, int zoom, int iris, int focus) override;
    Bytes Pan(uint32_t address, int speed) override;
    Bytes Tilt(uint32_t address, int speed) override;
    Bytes Zoom(uint32_t address, int speed) override;
    Bytes Move(uint32_t address, int pan, int tilt, int zoom) override;
    Bytes Iris(uint32_t address, int direction) override;
    Bytes Focus(uint32_t address, int direction) override;
};

}  // namespace vorna
