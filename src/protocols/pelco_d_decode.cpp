#include "protocols/decode_families.h"
#include "protocols/decode_words.h"
#include "protocols/pelco_common.h"
#include "protocols/pelco_d_wire.h"

namespace vorna {

namespace {

using namespace pelco_d;

// The signed speed a motion frame carries for one axis: speed byte + 1 in the
// direction of its bit. A speed byte without a direction bit, or both bits of
// one axis, is no motion the builder makes.
bool AxisSpeed(uint8_t bits, uint8_t negative, uint8_t positive, int speedByte, int& speed) {
    const bool back = (bits & negative) != 0;
    const bool forth = (bits & positive) != 0;
    if (back && forth) return false;
    if (!back && !forth) {
        speed = 0;
        return speedByte == 0;
    }
    speed = (speedByte + 1) * (back ? -1 : 1);
    return true;
}

class PelcoDReader : public FrameReader {
public:
    explicit PelcoDReader(bool hsd) : hsd_(hsd) {}

    FrameSpan Measure(const uint8_t* data, size_t size) const override {
        if (data[0] != kSync) return FrameSpan::NoStart();
        if (size < kFrameSize) return FrameSpan::NeedMore();
        const uint8_t expected = Checksum(data);
        if (data[kChecksumAt] != expected) return FrameSpan::Invalid(kFrameSize, BadChecksum(data[kChecksumAt], expected));
        return FrameSpan::Valid(kFrameSize);
    }

    void Decode(const uint8_t* data, size_t, DecodedFrame& frame) override {
        frame.address = data[kAddressAt];
        const uint8_t command1 = data[kCommand1At];
        const uint8_t command2 = data[kCommand2At];
        const uint8_t data1 = data[kData1At];
        const uint8_t data2 = data[kData2At];
        const bool decoded = (command2 & 1) != 0 ? command1 == 0 && data1 == 0 && DecodeCommand(command2, data2, frame)
                                                 : DecodeMotion(command1, command2, data1, data2, frame);
        if (decoded) return;
        const uint32_t value = uint32_t{command1} << 24 | uint32_t{command2} << 16 | uint32_t{data1} << 8 | data2;
        Describe(frame, "RawCommand", {static_cast<int>(value)}, FrameKind::kOther, RawWords(value));
    }

private:
    static bool DecodeMotion(uint8_t command1, uint8_t command2, uint8_t data1, uint8_t data2, DecodedFrame& frame) {
        if (command1 == 0 && (command2 & kFocusFar) == 0) {
            int pan = 0, tilt = 0;
            if (!AxisSpeed(command2, pelco::kPanLeft, pelco::kPanRight, data1, pan)) return false;
            if (!AxisSpeed(command2, pelco::kTiltDown, pelco::kTiltUp, data2, tilt)) return false;
            int zoom = 0;
            if (!AxisSpeed(command2, pelco::kZoomOut, pelco::kZoomIn, 0, zoom)) return false;
            DescribeMove(frame, pan, tilt, zoom);
            return true;
        }
        if (data1 != 0 || data2 != 0) return false;
        if (command2 == 0 && command1 == kIrisOpen) return Lens(frame, "Iris", 1, "iris open (in the menu: select)");
        if (command2 == 0 && command1 == kIrisClose) return Lens(frame, "Iris", -1, IrisWords(-1));
        if (command2 == 0 && command1 == kFocusNear) return Lens(frame, "Focus", 1, FocusWords(1));
        if (command1 == 0 && command2 == kFocusFar) return Lens(frame, "Focus", -1, FocusWords(-1));
        return false;
    }

    static bool Lens(DecodedFrame& frame, const char* operation, int direction, std::string words) {
        Describe(frame, operation, {direction}, FrameKind::kMotion, std::move(words));
        return true;
    }

    bool DecodeCommand(uint8_t command, int value, DecodedFrame& frame) const {
        switch (command) {
            case pelco::kSetPreset:
                if (!hsd_ && value == pelco::kMenuPreset) return Other(frame, "Menu", {1}, "open the menu (store preset 95)");
                return Other(frame, "Preset", {value, kPresetSet}, PresetWords(value, kPresetSet));
            case pelco::kClearPreset: return Other(frame, "Preset", {value, kPresetClear}, PresetWords(value, kPresetClear));
            case pelco::kGoToPreset: return DecodeGoTo(value, frame);
            case pelco::kSetZoomSpeed: return Other(frame, "SetZoomSpeed", {value}, "zoom speed " + std::to_string(value));
            case kAutoFocus:
                if (value == kAutoOn) return Other(frame, "AutoFocus", {1}, "auto focus on");
                return value == kAutoOff && Other(frame, "AutoFocus", {0}, "auto focus off");
            case kAutoIris:
                if (value == kAutoOn) return Other(frame, "AutoIris", {1}, "auto iris on");
                return value == kAutoOff && Other(frame, "AutoIris", {0}, "auto iris off");
            case kAutoIrisFollowUp:
                return value == kAutoIrisFollowUpData && Other(frame, "AutoIris", {1}, "auto iris on (second frame)");
            case kStartRecordingPattern:
                return Other(frame, "Pattern", {value, kPatternStartRecording}, PatternWords(value, kPatternStartRecording));
            case kStopRecordingPattern:
                return value == 0 && Other(frame, "Pattern", {0, kPatternStopRecording}, PatternWords(0, kPatternStopRecording));
            case kRunPattern: return Other(frame, "Pattern", {value, kPatternRun}, PatternWords(value, kPatternRun));
            default: return false;
        }
    }

    bool DecodeGoTo(int preset, DecodedFrame& frame) const {
        if (preset == kFlipPreset) return Other(frame, "Flip", {0}, "flip (go to preset 33)");
        if (hsd_ && preset == kHsdMenuPreset) return Other(frame, "Menu", {1}, "open the menu (go to preset 90)");
        const int pattern = preset - kHsdFirstPatternPreset;
        if (hsd_ && pattern >= 0 && pattern < 3) {
            return Other(frame, "Pattern", {pattern, kPatternRun},
                         PatternWords(pattern, kPatternRun) + " (go to preset " + std::to_string(preset) + ")");
        }
        return Other(frame, "Preset", {preset, kPresetGoTo}, PresetWords(preset, kPresetGoTo));
    }

    static bool Other(DecodedFrame& frame, const char* operation, std::vector<int> args, std::string words) {
        Describe(frame, operation, std::move(args), FrameKind::kOther, std::move(words));
        return true;
    }

    const bool hsd_;
};

}  // namespace

std::unique_ptr<FrameReader> MakePelcoDReader(bool hsd) { return std::make_unique<PelcoDReader>(hsd); }

}  // namespace vorna
