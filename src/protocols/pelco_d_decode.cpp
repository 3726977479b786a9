#include "protocols/decode_families.h"
#include "protocols/pelco_d_wire.h"
#include "protocols/pelco_decode.h"

namespace vorna {

namespace {

using namespace pelco_d;
using pelco::Lens;
using pelco::Other;

class PelcoDReader : public FrameReader {
public:
    explicit PelcoDReader(bool hsd) : hsd_(hsd) {}

    FrameSpan Measure(const uint8_t* data, size_t size) const override {
        if (data[0] != kSync) return FrameSpan::NoStart();
        if (size < kFrameSize) return FrameSpan::NeedMore();
        const uint8_t expected = Checksum(data);
        if (data[kChecksumAt] != expected)
            return FrameSpan::Invalid(kFrameSize, BadChecksum(data[kChecksumAt], expected));
        return FrameSpan::Valid(kFrameSize);
    }

    void Decode(const uint8_t* data, size_t, DecodedFrame& frame) override {
        frame.address = data[kAddressAt];
        const uint8_t command1 = data[kCommand1At];
        const uint8_t command2 = data[kCommand2At];
        const uint8_t data1 = data[kData1At];
        const uint8_t data2 = data[kData2At];
        // Command 2 is odd for the numbered commands, even for motion.
        const bool decoded = (command2 & 1) != 0 ? command1 == 0 && data1 == 0 && DecodeCommand(command2, data2, frame)
                                                 : DecodeMotion(command1, command2, data1, data2, frame);
        if (!decoded) pelco::DecodeRaw(pelco::ReadCommand(data + kCommand1At), frame);
    }

private:
    static bool DecodeMotion(uint8_t command1, uint8_t command2, uint8_t data1, uint8_t data2, DecodedFrame& frame) {
        if (command1 == 0 && (command2 & kFocusFar) == 0) return pelco::DecodeMove(command2, data1, data2, frame);
        if (data1 != 0 || data2 != 0) return false;
        if (command2 == 0 && command1 == kIrisOpen) return Lens(frame, "Iris", 1, "iris open (in the menu: select)");
        if (command2 == 0 && command1 == kIrisClose) return Lens(frame, "Iris", -1, IrisWords(-1));
        if (command2 == 0 && command1 == kFocusNear) return Lens(frame, "Focus", 1, FocusWords(1));
        if (command1 == 0 && command2 == kFocusFar) return Lens(frame, "Focus", -1, FocusWords(-1));
        return false;
    }

    bool DecodeCommand(uint8_t command, int value, DecodedFrame& frame) const {
        switch (command) {
            case pelco::kGoToPreset: return DecodeGoTo(value, frame);
            case kAutoFocus:
                if (value == kAutoOn) return Other(frame, "AutoFocus", {1}, "auto focus on");
                return value == kAutoOff && Other(frame, "AutoFocus", {0}, "auto focus off");
            case kAutoIris:
                if (value == kAutoOn) return Other(frame, "AutoIris", {1}, "auto iris on");
                return value == kAutoOff && Other(frame, "AutoIris", {0}, "auto iris off");
            case kAutoIrisFollowUp:
                return value == kAutoIrisFollowUpData && Other(frame, "AutoIris", {1}, "auto iris on (second frame)");
            case kStartRecordingPattern:
                return Other(frame, "Pattern", {value, kPatternStartRecording},
                             PatternWords(value, kPatternStartRecording));
            case kStopRecordingPattern:
                return value == 0 &&
                       Other(frame, "Pattern", {0, kPatternStopRecording}, PatternWords(0, kPatternStopRecording));
            case kRunPattern: return Other(frame, "Pattern", {value, kPatternRun}, PatternWords(value, kPatternRun));
            default: return pelco::DecodePresetCommand(command, value, !hsd_, frame);
        }
    }

    // Some presets are commands of their own: 33 flips the dome; HSD domes
    // open their menu at 90 and keep their patterns in 79 to 81.
    bool DecodeGoTo(int preset, DecodedFrame& frame) const {
        if (preset == kFlipPreset) return Other(frame, "Flip", {0}, "flip (go to preset 33)");
        if (hsd_ && preset == kHsdMenuPreset) return Other(frame, "Menu", {1}, "open the menu (go to preset 90)");
        const int pattern = preset - kHsdFirstPatternPreset;
        if (hsd_ && pattern >= 0 && pattern < kHsdPatternCount) {
            return Other(frame, "Pattern", {pattern, kPatternRun},
                         PatternWords(pattern, kPatternRun) + " (go to preset " + std::to_string(preset) + ")");
        }
        return pelco::DecodePresetCommand(pelco::kGoToPreset, preset, !hsd_, frame);
    }

    const bool hsd_;
};

}  // namespace

std::unique_ptr<FrameReader> MakePelcoDReader(bool hsd) { return std::make_unique<PelcoDReader>(hsd); }

}  // namespace vorna
