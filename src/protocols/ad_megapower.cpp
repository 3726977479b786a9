#include "protocols/ad_megapower.h"

#include <algorithm>
#include <string>

#include "protocols/ad_megapower_wire.h"

namespace vorna {

namespace {

using namespace ad_megapower;

// Numbers are written as given, so a code beyond the int range wraps as the
// 32-bit sum it is instead of overflowing.
std::string PatternCode(int base, int number) {
    return std::to_string(static_cast<int32_t>(static_cast<uint32_t>(base) + static_cast<uint32_t>(number)));
}

// A speed magnitude of 1 to 64 becomes a keyboard speed digit (magnitude / 8).
// Magnitudes beyond `fastest` get `beyondFastest` instead of a digit.
std::string SpeedDigit(int speed, int fastest, const char* beyondFastest) {
    if (speed < -fastest || speed > fastest) return beyondFastest;
    return std::to_string((speed < 0 ? -speed : speed) / 8);
}

// The 3200 knows the digits 0 to 6; beyond 55 the bare direction key is sent.
std::string M3200SpeedDigit(int speed) { return SpeedDigit(speed, 55, ""); }

// The 48 knows the digits 0 to 7 and 8 for everything beyond 63.
std::string Mp48SpeedDigit(int speed) { return SpeedDigit(speed, 63, "8"); }

// The keys a kept command text carries after its leading selection
// ("<monitor>M<anything>#<letter>"). A text that does not start with a
// complete selection is kept whole.
Bytes WithoutSelection(const Bytes& text) {
    const size_t monitorEnd = text.find_first_not_of("0123456789");
    if (monitorEnd == Bytes::npos || text[monitorEnd] != 'M') return text;
    const size_t cameraEnd = text.find('#', monitorEnd + 1);
    if (cameraEnd == Bytes::npos) return text;
    const size_t keysStart = cameraEnd + 2;
    return keysStart < text.size() ? text.substr(keysStart) : Bytes();
}

}  // namespace

CAdMPBase::CAdMPBase(bool multi) : multi_(multi) {}

int CAdMPBase::GetPresetCount() const { return 96; }
int CAdMPBase::GetMinAddress() const { return 1; }
int CAdMPBase::GetPatternType() const { return 0x80003; }

bool CAdMPBase::CanAutoFocus() { return true; }
bool CAdMPBase::CanAutoIris() { return true; }
bool CAdMPBase::CanFlip() { return true; }
bool CAdMPBase::CanApplePeel() { return true; }

// A kept command is resent on the camera's present channel: its selection is
// dropped, its channel letters are changed when the camera has moved to
// another channel, and a camera that lost its channel is selected again. The
// host's text already ends in its letter, so none is appended.
Bytes CAdMPBase::PassThrough(uint32_t address, const Bytes& text) {
    Bytes keys = WithoutSelection(text);
    if (keys.empty()) return keys;
    const Lookup found = FindChannel(address, Refresh::kMostRecent);
    const char letter = ChannelLetter(found.channel);
    if (keys.back() != letter) std::replace_if(keys.begin(), keys.end(), IsChannelLetter, letter);
    return found.needsSelection ? Selection(address, found.channel) + keys : keys;
}

// Clearing a preset has no key: the bare number is sent.
Bytes CAdMPBase::Preset(uint32_t address, int number, int action) {
    Bytes keys = std::to_string(number);
    if (action == kPresetSet) keys += kPresetSetKey;
    if (action == kPresetGoTo) keys += kPresetGoToKey;
    return OnChannel(address, keys, Refresh::kKeepOrder);
}

Bytes CAdMPBase::SetZoomSpeed(uint32_t, int) { return {}; }

Bytes CAdMPBase::AutoIris(uint32_t address, int) { return OnChannel(address, kLensAutoFunction, Refresh::kMostRecent); }

Bytes CAdMPBase::AutoFocus(uint32_t address, int) { return OnChannel(address, kLensAutoFunction, Refresh::kMostRecent); }

Bytes CAdMPBase::RawCommand(uint32_t, uint32_t) { return {}; }
Bytes CAdMPBase::Menu(uint32_t, int) { return {}; }
Bytes CAdMPBase::MenuEnter(uint32_t, int) { return {}; }
Bytes CAdMPBase::MenuNavigate(uint32_t, int, int, int) { return {}; }

Bytes CAdMPBase::Flip(uint32_t address, int) { return OnChannel(address, kFlipFunction, Refresh::kMostRecent); }

Bytes CAdMPBase::ApplePeel(uint32_t address, int) {
    return OnChannel(address, kApplePeelFunction, Refresh::kKeepOrder);
}

Bytes CAdMPBase::Pattern(uint32_t address, int number, int action) {
    Bytes keys;
    switch (action) {
        case kPatternStartRecording: keys = PatternCode(kRecordPatternBase, number); break;
        case kPatternStopRecording: keys = std::to_string(kStopRecordingCode); break;
        case kPatternAction2: keys = std::to_string(kPatternAction2Code); break;
        case kPatternRun: keys = PatternCode(kRunPatternBase, number); break;
        default: return {};
    }
    return OnChannel(address, keys + kPatternKey, Refresh::kKeepOrder);
}

Bytes CAdMPBase::OnChannel(uint32_t address, Bytes keys, Refresh refresh) {
    if (keys.empty()) return keys;
    const Lookup found = FindChannel(address, refresh);
    if (found.needsSelection) keys.insert(0, Selection(address, found.channel));
    return keys + ChannelLetter(found.channel);
}

Bytes CAdMPBase::DirectionKey(uint32_t address, int direction, const char* negative, const char* positive) {
    if (direction == 0) return {};
    return OnChannel(address, direction < 0 ? negative : positive, Refresh::kMostRecent);
}

// Without multi mode every command selects its camera on channel a. In multi
// mode a camera keeps its channel while it is in the table; a new camera takes
// a free channel or, once all four are taken, the least recently used one.
// A refreshing command moves its camera to the most recent end; any other
// command that takes over a channel leaves the new camera in the evicted
// one's place, so its channel is the next to be taken over again.
CAdMPBase::Lookup CAdMPBase::FindChannel(uint32_t address, Refresh refresh) {
    if (!multi_) return {0, true};
    const bool mostRecent = refresh == Refresh::kMostRecent;
    auto entry = std::find_if(channels_.begin(), channels_.end(),
                              [address](const AdChannel& c) { return c.address == address; });
    if (entry != channels_.end()) {
        const Lookup found{entry->channel, false};
        if (mostRecent) std::rotate(entry, entry + 1, channels_.end());
        return found;
    }
    if (channels_.size() < kChannelCount) {
        const uint32_t channel = static_cast<uint32_t>(channels_.size());
        channels_.push_back({address, channel});
        return {channel, true};
    }
    const uint32_t channel = channels_.front().channel;
    if (mostRecent) {
        channels_.erase(channels_.begin());
        channels_.push_back({address, channel});
    } else {
        channels_.front().address = address;
    }
    return {channel, true};
}

// "<monitor>M<letter><camera>#<letter>": monitor 6 without multi mode, else
// the channel's own monitor 1 to 4.
Bytes CAdMPBase::Selection(uint32_t address, uint32_t channel) const {
    const int monitor = multi_ ? static_cast<int>(channel % 16) + 1 : kSingleMonitor;
    const char letter = ChannelLetter(channel);
    return std::to_string(monitor) + 'M' + letter + std::to_string(address) + '#' + letter;
}

int CAdM3200::GetMaxAddress() const { return 10000; }
bool CAdM3200::ShouldRepeat(int64_t, int64_t) const { return true; }
int CAdM3200::GetCommandInterval() const { return 67; }

Bytes CAdM3200::StopAxes(uint32_t, int, int, int, int, int) { return {}; }
Bytes CAdM3200::Pan(uint32_t, int) { return {}; }
Bytes CAdM3200::Tilt(uint32_t, int) { return {}; }
Bytes CAdM3200::Zoom(uint32_t, int) { return {}; }

// Each moving axis adds its keys and then the whole text so far is put on the
// camera's channel again, so without multi mode a move on two axes carries
// the selection twice, once in front of each axis' keys.
Bytes CAdM3200::Move(uint32_t address, int pan, int tilt, int zoom) {
    Bytes text;
    const auto addAxis = [&](const Bytes& keys) { text = OnChannel(address, text + keys, Refresh::kMostRecent); };
    if (pan != 0) addAxis(M3200SpeedDigit(pan) + (pan < 0 ? 'L' : 'R'));
    if (tilt != 0) addAxis(M3200SpeedDigit(tilt) + (tilt < 0 ? 'D' : 'U'));
    if (zoom != 0) addAxis(zoom > 0 ? "T" : "W");
    return text;
}

Bytes CAdM3200::Iris(uint32_t address, int direction) { return DirectionKey(address, direction, "C", "O"); }

Bytes CAdM3200::Focus(uint32_t address, int direction) { return DirectionKey(address, direction, "F", "N"); }

int CAdMp48::GetMaxAddress() const { return 99; }
bool CAdMp48::ShouldRepeat(int64_t, int64_t) const { return false; }

// Pan and tilt stop through Pan and Tilt with speed 0; only the lens has stop
// keys here, and the first moving one of zoom, iris and focus is stopped.
Bytes CAdMp48::StopAxes(uint32_t address, int pan, int tilt, int zoom, int iris, int focus) {
    if (pan != 0 || tilt != 0) return {};
    Bytes keys;
    if (zoom != 0) {
        keys = zoom < 0 ? "0W" : "0T";
    } else if (iris != 0) {
        keys = iris < 0 ? "0C" : "0O";
    } else if (focus != 0) {
        keys = focus > 0 ? "0N" : "0F";
    }
    return OnChannel(address, keys, Refresh::kMostRecent);
}

// Speed 0 gives the digit 0, the stop key of the axis.
Bytes CAdMp48::Pan(uint32_t address, int speed) {
    return OnChannel(address, Mp48SpeedDigit(speed) + (speed < 0 ? 'L' : 'R'), Refresh::kMostRecent);
}

Bytes CAdMp48::Tilt(uint32_t address, int speed) {
    return OnChannel(address, Mp48SpeedDigit(speed) + (speed < 0 ? 'D' : 'U'), Refresh::kMostRecent);
}

Bytes CAdMp48::Zoom(uint32_t address, int speed) { return DirectionKey(address, speed, "1W", "1T"); }

Bytes CAdMp48::Move(uint32_t, int, int, int) { return {}; }

Bytes CAdMp48::Iris(uint32_t address, int direction) { return DirectionKey(address, direction, "1C", "1O"); }

Bytes CAdMp48::Focus(uint32_t address, int direction) { return DirectionKey(address, direction, "1F", "1N"); }

}  // namespace vorna
