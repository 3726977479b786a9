#include "protocols/decode_families.h"
#include "protocols/decode_words.h"
#include "protocols/protocol.h"
#include "protocols/sensormatic_wire.h"

namespace vorna {

namespace {

using namespace sensormatic;

constexpr size_t kShortFrame = 3;
// Patterns 0 to 3 record from kRecordPatternBase; runs reach up to the
// stop-recording command.
constexpr int kRecordablePatterns = 4;

// A command byte sent on its own is what RawCommand sends for that byte.
void Raw(DecodedFrame& frame, uint32_t value, FrameKind kind, std::string words) {
    Describe(frame, "RawCommand", {static_cast<int>(value)}, kind, std::move(words));
}

class SensormaticReader : public FrameReader {
public:
    // No sync byte: a camera address (never 0) and the zero sum mark a frame.
    // A command with data bytes may also come alone (a raw command), which its
    // zero sum tells.
    FrameSpan Measure(const uint8_t* data, size_t size) const override {
        if (data[0] == 0) return FrameSpan::NoStart();
        if (size < 2) return FrameSpan::NeedMore();
        const size_t length = FrameLength(data[1]);
        if (size >= length && Checksum(data, length - 1) == data[length - 1]) return FrameSpan::Valid(length);
        if (length > kShortFrame && size >= kShortFrame && Checksum(data, 2) == data[2]) {
            return FrameSpan::Valid(kShortFrame);
        }
        if (size < length) return FrameSpan::NeedMore();
        return FrameSpan::Invalid(length, BadChecksum(data[length - 1], Checksum(data, length - 1)));
    }

    void Decode(const uint8_t* data, size_t size, DecodedFrame& frame) override {
        frame.address = data[0];
        const uint8_t command = data[1];
        if (size == kShortFrame) return DecodeCommand(command, frame);
        if (command == kVariableSpeed) return DecodeSpeed(data[2], data[3], frame);
        if (command == kPreset) return DecodePreset(data[2], data[3], frame);
        DecodeSpecial(data[2], frame);
    }

private:
    static void DecodeCommand(uint8_t command, DecodedFrame& frame) {
        const uint32_t raw = uint32_t{command} << 24;
        switch (command) {
            case kPanStop: return Describe(frame, "StopAxes", {1, 0, 0, 0, 0}, FrameKind::kStop, "pan stop");
            case kTiltStop: return Describe(frame, "StopAxes", {0, 1, 0, 0, 0}, FrameKind::kStop, "tilt stop");
            case kZoomStop: return Describe(frame, "StopAxes", {0, 0, 1, 0, 0}, FrameKind::kStop, "zoom stop");
            case kIrisStop: return Describe(frame, "StopAxes", {0, 0, 0, 1, 0}, FrameKind::kStop, "iris stop");
            case kFocusStop: return Describe(frame, "StopAxes", {0, 0, 0, 0, 1}, FrameKind::kStop, "focus stop");
            case kZoomIn: return Describe(frame, "Zoom", {1}, FrameKind::kMotion, "zoom in");
            case kZoomOut: return Describe(frame, "Zoom", {-1}, FrameKind::kMotion, "zoom out");
            case kIrisOpen: return Describe(frame, "Iris", {1}, FrameKind::kMotion, IrisWords(1));
            case kIrisClose: return Describe(frame, "Iris", {-1}, FrameKind::kMotion, IrisWords(-1));
            case kFocusNear: return Describe(frame, "Focus", {1}, FrameKind::kMotion, FocusWords(1));
            case kFocusFar: return Describe(frame, "Focus", {-1}, FrameKind::kMotion, "focus far (in the menu: select)");
            case kApplePeel: return Describe(frame, "ApplePeel", {0}, FrameKind::kOther, "apple peel");
            case kPanLeft: return Raw(frame, raw, FrameKind::kMotion, "pan left");
            case kPanRight: return Raw(frame, raw, FrameKind::kMotion, "pan right");
            case kTiltUp: return Raw(frame, raw, FrameKind::kMotion, "tilt up");
            case kTiltDown: return Raw(frame, raw, FrameKind::kMotion, "tilt down");
            case kStopRecording:
                return Describe(frame, "Pattern", {0, kPatternStopRecording}, FrameKind::kOther,
                           PatternWords(0, kPatternStopRecording));
            case kPatternAction2Command:
                return Describe(frame, "Pattern", {0, kPatternAction2}, FrameKind::kOther, PatternWords(0, kPatternAction2));
            default: break;
        }
        const int recorded = command - static_cast<int>(kRecordPatternBase);
        if (recorded >= 0 && recorded < kRecordablePatterns) {
            return Describe(frame, "Pattern", {recorded, kPatternStartRecording}, FrameKind::kOther,
                       PatternWords(recorded, kPatternStartRecording));
        }
        const int run = command - static_cast<int>(kRunPatternBase);
        if (run >= 0 && command < kStopRecording) {
            return Describe(frame, "Pattern", {run, kPatternRun}, FrameKind::kOther, PatternWords(run, kPatternRun));
        }
        Raw(frame, raw, FrameKind::kOther, RawWords(raw));
    }

    // The speed is the magnitude the executor passed.
    static void DecodeSpeed(uint8_t direction, uint8_t speed, DecodedFrame& frame) {
        if (speed != 0) {
            switch (direction) {
                case kPanLeft: return Axis(frame, "Pan", -speed, "pan", "left", "right");
                case kPanRight: return Axis(frame, "Pan", speed, "pan", "left", "right");
                case kTiltDown: return Axis(frame, "Tilt", -speed, "tilt", "down", "up");
                case kTiltUp: return Axis(frame, "Tilt", speed, "tilt", "down", "up");
                default: break;
            }
        }
        const uint32_t raw = uint32_t{kVariableSpeed} << 24 | uint32_t{direction} << 16 | uint32_t{speed} << 8;
        Raw(frame, raw, FrameKind::kOther, RawWords(raw));
    }

    static void Axis(DecodedFrame& frame, const char* operation, int speed, const char* axis, const char* negative,
                     const char* positive) {
        Describe(frame, operation, {speed}, FrameKind::kMotion, AxisWords(axis, speed, negative, positive));
    }

    // Presets go out less one. Clearing sends the store frame, so a store
    // frame reads as what the camera does: store.
    static void DecodePreset(uint8_t function, uint8_t number, DecodedFrame& frame) {
        const int preset = (number + 1) & 0xFF;
        const int action = function == kPresetFunctionGoTo ? kPresetGoTo : kPresetSet;
        if (function != kPresetFunctionGoTo && function != kPresetFunctionStore) {
            const uint32_t raw = uint32_t{kPreset} << 24 | uint32_t{function} << 16 | uint32_t{number} << 8;
            return Raw(frame, raw, FrameKind::kOther, RawWords(raw));
        }
        Describe(frame, "Preset", {preset, action}, FrameKind::kOther, PresetWords(preset, action));
    }

    // Auto iris and auto focus share one special function.
    static void DecodeSpecial(uint8_t function, DecodedFrame& frame) {
        switch (function) {
            case kFlip: return Describe(frame, "Flip", {0}, FrameKind::kOther, "flip");
            case kMenuOpen: return Describe(frame, "Menu", {1}, FrameKind::kOther, "open the menu");
            case kMenuClose: return Describe(frame, "Menu", {0}, FrameKind::kOther, "close the menu");
            case kLensAuto: return Describe(frame, "AutoIris", {1}, FrameKind::kOther, "auto iris and focus on");
            default: break;
        }
        const uint32_t raw = uint32_t{kSpecialFunction} << 24 | uint32_t{function} << 16;
        Raw(frame, raw, FrameKind::kOther, "special function " + HexByte(function));
    }
};

}  // namespace

std::unique_ptr<FrameReader> MakeSensormaticReader() { return std::make_unique<SensormaticReader>(); }

}  // namespace vorna
