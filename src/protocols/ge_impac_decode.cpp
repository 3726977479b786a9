#include "protocols/decode_families.h"
#include "protocols/decode_words.h"
#include "protocols/ge_impac_wire.h"
#include "protocols/protocol.h"

namespace vorna {

namespace {

using namespace ge_impac;

// A move speed byte: 0 still; the top bit for right, up or in. Pan and tilt
// carry half the magnitude, zoom eight times it. The top bit alone is a
// negative speed that ran into it.
int Speed(uint8_t byte, int perMagnitudeTimesTwo) {
    if (byte == 0) return 0;
    const bool positive = (byte & kPositiveDirection) != 0 && byte != kPositiveDirection;
    const int size = (positive ? byte & 0x7F : byte) * 2 / perMagnitudeTimesTwo;
    return positive ? size : -size;
}

constexpr int kPanTiltScale = 1;
constexpr int kZoomScale = 16;

class GEImpacReader : public FrameReader {
public:
    FrameSpan Measure(const uint8_t* data, size_t size) const override {
        if (data[kStartAt] != kStart) return FrameSpan::NoStart();
        if (size < 2) return FrameSpan::NeedMore();
        if (data[kCountAt] != kShortCount && data[kCountAt] != kMoveCount) return FrameSpan::NoStart();
        const size_t length = data[kCountAt] + 2u;
        if (size < length) return FrameSpan::NeedMore();
        const uint8_t expected = Checksum(data, length - 1);
        if (data[length - 1] != expected) return FrameSpan::Invalid(length, BadChecksum(data[length - 1], expected));
        return FrameSpan::Valid(length);
    }

    void Decode(const uint8_t* data, size_t, DecodedFrame& frame) override {
        frame.address = data[kAddressAt];
        const uint8_t group = data[kClassAt];
        const uint8_t code = data[kCodeAt];
        const uint8_t parameter = data[kParameterAt];
        if (data[kCountAt] == kMoveCount && group == kCameraClass && code == kMoveCode) {
            return DescribeMove(frame, Speed(parameter, kPanTiltScale), Speed(data[kParameterAt + 1], kPanTiltScale),
                                Speed(data[kParameterAt + 2], kZoomScale));
        }
        if (group == kCameraClass && (code == kPresetSetCode || code == kPresetGoToCode)) {
            const int preset = parameter + 1;
            const int action = code == kPresetSetCode ? kPresetSet : kPresetGoTo;
            return Describe(frame, "Preset", {preset, action}, FrameKind::kOther, PresetWords(preset, action));
        }
        if (group == kLensKeyClass && DecodeKey(static_cast<char>(code), frame)) return;
        Describe(frame, "RawCommand", {group << 8 | code}, FrameKind::kOther,
                 "command class " + HexByte(group) + " code " + HexByte(code));
    }

private:
    // Upper-case keys move the lens, lower-case keys stop it.
    static bool DecodeKey(char key, DecodedFrame& frame) {
        switch (key) {
            case 'C': Describe(frame, "Iris", {-1}, FrameKind::kMotion, IrisWords(-1)); return true;
            case 'P': Describe(frame, "Iris", {1}, FrameKind::kMotion, IrisWords(1)); return true;
            case 'F': Describe(frame, "Focus", {-1}, FrameKind::kMotion, FocusWords(-1)); return true;
            case 'N': Describe(frame, "Focus", {1}, FrameKind::kMotion, FocusWords(1)); return true;
            case 'c': Describe(frame, "StopAxes", {0, 0, 0, -1, 0}, FrameKind::kStop, "iris stop"); return true;
            case 'p': Describe(frame, "StopAxes", {0, 0, 0, 1, 0}, FrameKind::kStop, "iris stop"); return true;
            case 'f': Describe(frame, "StopAxes", {0, 0, 0, 0, -1}, FrameKind::kStop, "focus stop"); return true;
            case 'n': Describe(frame, "StopAxes", {0, 0, 0, 0, 1}, FrameKind::kStop, "focus stop"); return true;
            default: return false;
        }
    }
};

}  // namespace

std::unique_ptr<FrameReader> MakeGEImpacReader() { return std::make_unique<GEImpacReader>(); }

}  // namespace vorna
