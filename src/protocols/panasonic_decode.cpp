#include <cstring>

#include "protocols/decode_families.h"
#include "protocols/decode_words.h"
#include "protocols/panasonic_wire.h"
#include "protocols/protocol.h"

namespace vorna {

namespace {

using namespace panasonic;

// Longer than any frame the builder makes: a frame not ended by then is none.
constexpr size_t kLongestFrame = 40;
constexpr size_t kLongestNumber = 8;
// The decimal digits of the largest address a 32-bit number holds.
constexpr size_t kLongestAddress = 10;
// A recalled preset 0: the preset prefix and eight digits.
constexpr size_t kLongestCommand = sizeof kPresetPrefix - 1 + kLongestNumber;

// The commands that are one fixed text.
struct FixedCommand {
    const char* text;
    const char* operation;
    std::vector<int> args;
    const char* words;
};

const FixedCommand kFixedCommands[] = {
    {kAutoIrisOn, "AutoIris", {1}, "auto iris on"},
    {kAutoIrisOff, "AutoIris", {0}, "auto iris off"},
    // Sent after either auto iris command.
    {kAutoIrisFollowUp, "AutoIris", {1}, "auto iris (second frame)"},
    {kAutoFocusOn, "AutoFocus", {1}, "auto focus on"},
    {kAutoFocusOff, "AutoFocus", {0}, "auto focus off"},
    {kMenuOpen, "Menu", {1}, "open the menu"},
    {kMenuClose, "Menu", {0}, "close the menu"},
    {kMenuUp, "MenuNavigate", {1, 0, 0}, "menu up"},
    {kMenuDown, "MenuNavigate", {-1, 0, 0}, "menu down"},
    {kMenuRight, "MenuNavigate", {0, 1, 0}, "menu right"},
    {kMenuLeft, "MenuNavigate", {0, -1, 0}, "menu left"},
    {kMenuEnter, "MenuNavigate", {0, 0, 1}, "menu select"},
    {kFlip, "Flip", {0}, "flip"},
    // The dome has one pattern: no number is sent.
    {kStartRecordingPattern, "Pattern", {0, kPatternStartRecording}, "start recording the pattern"},
    {kStopRecordingPattern, "Pattern", {0, kPatternStopRecording}, "stop recording the pattern"},
    {kRunPattern, "Pattern", {0, kPatternRun}, "run the pattern"},
};

bool IsDigit(uint8_t c) { return c >= '0' && c <= '9'; }
bool IsHex(uint8_t c) { return IsDigit(c) || (c >= 'A' && c <= 'F'); }

uint32_t HexValue(const char* text, size_t size) {
    uint32_t value = 0;
    for (size_t at = 0; at < size; ++at)
        value = value << 4 | static_cast<uint32_t>(IsDigit(text[at]) ? text[at] - '0' : text[at] - 'A' + 10);
    return value;
}

bool StartsWith(const std::string& text, const char* prefix) {
    return text.compare(0, std::strlen(prefix), prefix) == 0;
}

// The hex number after a command's prefix.
uint32_t NumberAfter(const std::string& command, const char* prefix) {
    const size_t length = std::strlen(prefix);
    return HexValue(command.data() + length, command.size() - length);
}

class PanasonicReader : public FrameReader {
public:
    // STX "AD" digits ";GC7:" hex digits ETX; anything else starts no frame.
    FrameSpan Measure(const uint8_t* data, size_t size) const override {
        if (data[0] != static_cast<uint8_t>(kStx)) return FrameSpan::NoStart();
        size_t at = 1;
        const auto fixed = [&](const char* text) {
            for (; *text != '\0'; ++text, ++at) {
                if (at < size && data[at] != static_cast<uint8_t>(*text)) return false;
            }
            return true;
        };
        const auto run = [&](bool (*accepts)(uint8_t)) {
            const size_t from = at;
            while (at < size && at < kLongestFrame && accepts(data[at])) ++at;
            return at - from;
        };
        if (!fixed(kAddressMark)) return FrameSpan::NoStart();
        if (at >= size) return FrameSpan::NeedMore();
        const size_t digits = run(IsDigit);
        if (at >= size) return at < kLongestFrame ? FrameSpan::NeedMore() : FrameSpan::NoStart();
        if (digits == 0 || digits > kLongestAddress || !fixed(kCommandMark)) return FrameSpan::NoStart();
        if (at >= size) return FrameSpan::NeedMore();
        const size_t command = run(IsHex);
        if (at >= size) return at < kLongestFrame ? FrameSpan::NeedMore() : FrameSpan::NoStart();
        if (data[at] != static_cast<uint8_t>(kEtx) || command < kCommandDigits || command > kLongestCommand) {
            return FrameSpan::NoStart();
        }
        return FrameSpan::Valid(at + 1);
    }

    void Decode(const uint8_t* data, size_t size, DecodedFrame& frame) override {
        const std::string text(reinterpret_cast<const char*>(data) + 1, size - 2);
        const size_t mark = text.find(kCommandMark);
        int64_t address = 0;
        for (size_t at = std::strlen(kAddressMark); at < mark; ++at) address = address * 10 + (text[at] - '0');
        frame.address = static_cast<int>(address);
        const std::string command = text.substr(mark + std::strlen(kCommandMark));
        for (const FixedCommand& fixed : kFixedCommands) {
            if (command == fixed.text) {
                return Describe(frame, fixed.operation, fixed.args, FrameKind::kOther, fixed.words);
            }
        }
        if (command.size() == kCommandDigits && DecodeNumbered(command, frame)) return;
        if (!DecodePreset(command, frame)) {
            const uint32_t value =
                HexValue(command.data(), command.size() < kLongestNumber ? command.size() : kLongestNumber);
            Describe(frame, "RawCommand", {static_cast<int>(value)}, FrameKind::kOther, RawWords(value));
        }
    }

private:
    static bool DecodeNumbered(const std::string& command, DecodedFrame& frame) {
        if (StartsWith(command, kMovePrefix)) return DecodeMove(NumberAfter(command, kMovePrefix), frame);
        if (StartsWith(command, kIrisPrefix)) {
            return DecodeLens("Iris", IrisWords, NumberAfter(command, kIrisPrefix), kIrisOpen, kIrisClose, kIrisStop,
                              frame);
        }
        if (StartsWith(command, kFocusPrefix)) {
            return DecodeLens("Focus", FocusWords, NumberAfter(command, kFocusPrefix), kFocusNear, kFocusFar,
                              kFocusStop, frame);
        }
        return false;
    }

    static bool DecodeLens(const char* operation, std::string (*words)(int), uint32_t code, uint32_t positive,
                           uint32_t negative, uint32_t stop, DecodedFrame& frame) {
        if (code != positive && code != negative && code != stop) return false;
        const int direction = code == positive ? 1 : code == negative ? -1 : 0;
        Describe(frame, operation, {direction}, direction == 0 ? FrameKind::kStop : FrameKind::kMotion,
                 words(direction));
        return true;
    }

    // Stored presets go out 99 above their number, recalled ones 1 below;
    // recalling preset 0 writes -1 in eight digits.
    static bool DecodePreset(const std::string& command, DecodedFrame& frame) {
        const size_t prefix = std::strlen(kPresetPrefix);
        if (!StartsWith(command, kPresetPrefix) || (command.size() != prefix + 2 && command.size() != prefix + 8)) {
            return false;
        }
        const uint32_t code = NumberAfter(command, kPresetPrefix);
        const bool stored = code >= kStoredPresetOffset && code != kRecalledPresetOffset;
        const int preset = static_cast<int>(stored ? code - kStoredPresetOffset : code - kRecalledPresetOffset);
        const int action = stored ? kPresetSet : kPresetGoTo;
        Describe(frame, "Preset", {preset, action}, FrameKind::kOther, PresetWords(preset, action));
        return true;
    }

    // Zoom, direction, pan speed and tilt speed nibbles. A speed nibble s is
    // what magnitude 4 * s + 1 gives.
    static bool DecodeMove(uint32_t motion, DecodedFrame& frame) {
        const uint32_t zoomNibble = motion >> 12;
        const uint32_t direction = motion >> 8 & 0xF;
        const int panNibble = motion >> 4 & 0xF;
        const int tiltNibble = motion & 0xF;
        if (zoomNibble > kZoomStill) return false;
        const int zoom = zoomNibble == kZoomStill       ? 0
                         : zoomNibble >= kZoomOutSpeeds ? -static_cast<int>(zoomNibble - kZoomOutSpeeds + 1)
                                                        : static_cast<int>(zoomNibble + 1);
        for (int pan = -1; pan <= 1; ++pan) {
            for (int tilt = -1; tilt <= 1; ++tilt) {
                if (kDirections[pan + 1][tilt + 1] != direction) continue;
                if ((pan == 0 && panNibble != 0) || (tilt == 0 && tiltNibble != 0)) return false;
                DescribeMove(frame, pan * (4 * panNibble + 1), tilt * (4 * tiltNibble + 1), zoom);
                return true;
            }
        }
        return false;
    }
};

}  // namespace

std::unique_ptr<FrameReader> MakePanasonicReader() { return std::make_unique<PanasonicReader>(); }

}  // namespace vorna
