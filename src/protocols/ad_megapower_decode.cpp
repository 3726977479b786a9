#include <array>

#include "protocols/ad_megapower_wire.h"
#include "protocols/decode_families.h"
#include "protocols/decode_words.h"
#include "protocols/protocol.h"

namespace vorna {

namespace {

using namespace ad_megapower;

// More digits than any number the keyboard takes: no key sequence.
constexpr size_t kLongestNumber = 11;
constexpr int kSpeedStep = 8;
// A 3200 pan or tilt key without a digit runs beyond the fastest digit.
constexpr int kBeyondDigits = 56;
// The 48's digit 8 runs at the fastest speed.
constexpr int kMp48Fastest = 64;
constexpr int kMp48FastestDigit = 8;

bool IsDigit(uint8_t c) { return c >= '0' && c <= '9'; }
bool IsKey(uint8_t c) {
    static const auto kIsKey = [] {
        std::array<bool, 256> table{};
        for (const char* pair : {kPanKeys, kTiltKeys, kZoomKeys, kIrisKeys, kFocusKeys}) {
            table[static_cast<uint8_t>(pair[0])] = table[static_cast<uint8_t>(pair[1])] = true;
        }
        for (char key : {kMonitorKey, kCameraKey, kPresetSetKey, kPresetGoToKey, kPatternKey, kSpecialFunctionKey}) {
            table[static_cast<uint8_t>(key)] = true;
        }
        return table;
    }();
    return kIsKey[c];
}

// One key sequence: [number] [key] channel letter.
struct KeySequence {
    bool hasNumber = false;
    long long number = 0;
    char key = '\0';
    int channel = 0;
    size_t length = 0;
};

// Reads a key sequence at `data`; false when none starts there. `complete`
// is false when the bytes ran out before its channel letter.
bool ReadSequence(const uint8_t* data, size_t size, KeySequence& sequence, bool& complete) {
    size_t at = 0;
    complete = false;
    const bool negative = size > 0 && data[0] == '-';
    if (negative) ++at;
    const size_t digitsFrom = at;
    while (at < size && IsDigit(data[at])) {
        sequence.number = sequence.number * 10 + (data[at] - '0');
        if (++at - digitsFrom > kLongestNumber) return false;
    }
    sequence.hasNumber = at > digitsFrom;
    if (negative && !sequence.hasNumber && at < size) return false;
    if (negative) sequence.number = -sequence.number;
    if (at < size && IsKey(data[at])) sequence.key = static_cast<char>(data[at++]);
    if (at >= size) return true;
    if (!IsChannelLetter(static_cast<char>(data[at])) || (!sequence.hasNumber && sequence.key == '\0')) return false;
    sequence.channel = data[at] - 'a';
    sequence.length = at + 1;
    complete = true;
    return true;
}

// A pattern number as the 32-bit difference the builder's sum came from.
int Wrapped(int code, int base) { return static_cast<int>(static_cast<uint32_t>(code) - static_cast<uint32_t>(base)); }

// The direction of a key pair: -1 for the first key, +1 for the second.
int KeyDirection(const char* keys, char key) { return key == keys[0] ? -1 : key == keys[1] ? 1 : 0; }

class AdMegaPowerReader : public FrameReader {
public:
    explicit AdMegaPowerReader(bool mp48) : mp48_(mp48) {}

    // A monitor selection takes the camera selection after it on the same
    // channel into the same frame.
    FrameSpan Measure(const uint8_t* data, size_t size) const override {
        KeySequence first;
        bool complete = false;
        if (!ReadSequence(data, size, first, complete)) return FrameSpan::NoStart();
        if (!complete) return FrameSpan::NeedMore();
        if (first.key != kMonitorKey) return FrameSpan::Valid(first.length);
        KeySequence camera;
        if (!ReadSequence(data + first.length, size - first.length, camera, complete)) {
            return FrameSpan::Valid(first.length);
        }
        if (!complete) return FrameSpan::NeedMore();
        if (camera.key != kCameraKey || camera.channel != first.channel) return FrameSpan::Valid(first.length);
        return FrameSpan::Valid(first.length + camera.length);
    }

    void Decode(const uint8_t* data, size_t size, DecodedFrame& frame) override {
        KeySequence sequence;
        bool complete = false;
        ReadSequence(data, size, sequence, complete);
        frame.keyboard = sequence.channel + 1;
        if (sequence.key == kMonitorKey) return DecodeSelection(data, size, sequence, frame);
        if (sequence.key == kCameraKey) {
            cameras_[sequence.channel] = static_cast<int>(sequence.number);
            frame.address = cameras_[sequence.channel];
            return Describe(frame, "Select", {}, FrameKind::kOther, "select camera " + std::to_string(frame.address));
        }
        frame.address = cameras_[sequence.channel];
        if (!DecodeKeys(sequence, reinterpret_cast<const char*>(data), size - 1, frame)) {
            Describe(frame, "PassThrough", {}, FrameKind::kOther,
                     "keys " + std::string(reinterpret_cast<const char*>(data), size));
        }
    }

private:
    void DecodeSelection(const uint8_t* data, size_t size, const KeySequence& monitor, DecodedFrame& frame) {
        const int number = static_cast<int>(monitor.number);
        if (size == monitor.length) {
            return Describe(frame, "Select", {number}, FrameKind::kOther, "select monitor " + std::to_string(number));
        }
        KeySequence camera;
        bool complete = false;
        ReadSequence(data + monitor.length, size - monitor.length, camera, complete);
        cameras_[monitor.channel] = static_cast<int>(camera.number);
        frame.address = cameras_[monitor.channel];
        Describe(frame, "Select", {number}, FrameKind::kOther,
                 "select camera " + std::to_string(frame.address) + " on monitor " + std::to_string(number));
    }

    // `keys`: the sequence without its channel letter.
    bool DecodeKeys(const KeySequence& sequence, const char* keys, size_t size, DecodedFrame& frame) const {
        const int number = static_cast<int>(sequence.number);
        switch (sequence.key) {
            case kPresetSetKey: return Preset(frame, number, kPresetSet);
            case kPresetGoToKey: return Preset(frame, number, kPresetGoTo);
            // Clearing a preset has no key: the number alone.
            case '\0': return Preset(frame, number, kPresetClear);
            case kPatternKey: return DecodePattern(number, frame);
            case kSpecialFunctionKey: return DecodeSpecialFunction(std::string(keys, size), frame);
            default: break;
        }
        for (const char* axis : {kPanKeys, kTiltKeys}) {
            const int direction = KeyDirection(axis, sequence.key);
            if (direction != 0) return DecodePanTilt(axis == kPanKeys, direction, sequence, frame);
        }
        return DecodeZoomAndLens(sequence, frame);
    }

    // The 3200 moves through Move, the 48 through Pan and Tilt, where digit 0
    // is the stop key.
    bool DecodePanTilt(bool pan, int direction, const KeySequence& sequence, DecodedFrame& frame) const {
        const char* axis = pan ? "pan" : "tilt";
        const char* negative = pan ? "left" : "down";
        const char* positive = pan ? "right" : "up";
        if (mp48_ && sequence.hasNumber && sequence.number == 0) {
            Describe(frame, pan ? "Pan" : "Tilt", {direction < 0 ? -1 : 0}, FrameKind::kStop,
                     std::string(axis) + " stop");
            return true;
        }
        int64_t magnitude = kBeyondDigits;
        if (sequence.hasNumber)
            magnitude = mp48_ && sequence.number == kMp48FastestDigit ? kMp48Fastest : sequence.number * kSpeedStep;
        const int speed = static_cast<int>(direction * (magnitude > 0 ? magnitude : 1));
        if (mp48_) {
            Describe(frame, pan ? "Pan" : "Tilt", {speed}, FrameKind::kMotion,
                     AxisWords(axis, speed, negative, positive));
        } else {
            DescribeMove(frame, pan ? speed : 0, pan ? 0 : speed, 0);
        }
        return true;
    }

    // Without a number: the 3200's keys. Number 1 moves, number 0 stops (the
    // 48's keys).
    static bool DecodeZoomAndLens(const KeySequence& sequence, DecodedFrame& frame) {
        const char* const axes[] = {kZoomKeys, kIrisKeys, kFocusKeys};
        const char* const names[] = {"Zoom", "Iris", "Focus"};
        for (int axis = 0; axis < 3; ++axis) {
            const int direction = KeyDirection(axes[axis], sequence.key);
            if (direction == 0) continue;
            const std::string words = axis == 0   ? AxisWords("zoom", direction, "out", "in")
                                      : axis == 1 ? IrisWords(direction)
                                                  : FocusWords(direction);
            if (sequence.hasNumber && sequence.number == 0) {
                std::vector<int> stop(5, 0);
                stop[axis + 2] = direction;
                Describe(frame, "StopAxes", std::move(stop), FrameKind::kStop, std::string(names[axis]) + " stop");
            } else if (!sequence.hasNumber && axis == 0) {
                DescribeMove(frame, 0, 0, direction);
            } else {
                Describe(frame, names[axis], {direction}, FrameKind::kMotion, words);
            }
            return !sequence.hasNumber || sequence.number <= 1;
        }
        return false;
    }

    static bool Preset(DecodedFrame& frame, int number, int action) {
        Describe(frame, "Preset", {number, action}, FrameKind::kOther, PresetWords(number, action));
        return true;
    }

    // Recording pattern 0 sends the stop-recording code, so that code reads
    // as what the switcher does: stop recording.
    static bool DecodePattern(int code, DecodedFrame& frame) {
        int number = 0;
        int action;
        if (code == kStopRecordingCode) {
            action = kPatternStopRecording;
        } else if (code == kPatternAction2Code) {
            action = kPatternAction2;
        } else if (code > kRecordPatternBase) {
            action = kPatternStartRecording;
            number = Wrapped(code, kRecordPatternBase);
        } else {
            action = kPatternRun;
            number = Wrapped(code, kRunPatternBase);
        }
        Describe(frame, "Pattern", {number, action}, FrameKind::kOther, PatternWords(number, action));
        return true;
    }

    // One special function switches auto iris and auto focus.
    static bool DecodeSpecialFunction(const std::string& keys, DecodedFrame& frame) {
        if (keys == kLensAutoFunction) {
            Describe(frame, "AutoIris", {1}, FrameKind::kOther, "auto iris and focus");
        } else if (keys == kFlipFunction) {
            Describe(frame, "Flip", {0}, FrameKind::kOther, "flip");
        } else if (keys == kApplePeelFunction) {
            Describe(frame, "ApplePeel", {0}, FrameKind::kOther, "apple peel");
        } else {
            return false;
        }
        return true;
    }

    const bool mp48_;
    // The camera selected on each keyboard channel; -1 before a selection.
    int cameras_[kChannelCount] = {-1, -1, -1, -1};
};

}  // namespace

std::unique_ptr<FrameReader> MakeAdMegaPowerReader(bool mp48) { return std::make_unique<AdMegaPowerReader>(mp48); }

}  // namespace vorna
