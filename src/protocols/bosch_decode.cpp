#include "protocols/bosch_wire.h"
#include "protocols/decode_families.h"
#include "protocols/decode_words.h"
#include "protocols/protocol.h"

namespace vorna {

namespace {

using namespace bosch;

constexpr uint8_t kDirectionBits = kPanRight | kPanLeft | kTiltDown | kTiltUp | kZoomOut | kZoomIn;

// Pan and tilt speed s is what a quarter of the magnitude less one gives:
// magnitude 4 * (s + 1) reads back as s.
int PanTiltMagnitude(int speed) { return 4 * (speed + 1); }

// One axis of the control frame: its direction bits and speed field. A speed
// without a direction, or both directions, is no move the builder makes.
bool Axis(uint8_t directions, uint8_t negative, uint8_t positive, int speedField, int magnitude, int& value) {
    const bool back = (directions & negative) != 0;
    const bool forth = (directions & positive) != 0;
    if (back && forth) return false;
    if (!back && !forth) {
        value = 0;
        return speedField == 0;
    }
    value = back ? -magnitude : magnitude;
    return speedField != 0;
}

void Raw(DecodedFrame& frame, uint32_t value) {
    Describe(frame, "RawCommand", {static_cast<int>(value)}, FrameKind::kOther, RawWords(value));
}

class BoschReader : public FrameReader {
public:
    // A three-byte frame a raw command sent carries one zero byte after its
    // checksum; it belongs to the frame when it is already there.
    FrameSpan Measure(const uint8_t* data, size_t size) const override {
        size_t length;
        if (data[kHeadAt] == kHeadFourBytes) {
            length = kFourByteFrame;
        } else if (data[kHeadAt] == kHeadThreeBytes) {
            length = kThreeByteFrame;
        } else {
            return FrameSpan::NoStart();
        }
        if (size < length) return FrameSpan::NeedMore();
        const uint8_t expected = Checksum(data, length - 1);
        if (data[length - 1] != expected) return FrameSpan::Invalid(length, BadChecksum(data[length - 1], expected));
        if (length == kThreeByteFrame && size > length && data[length] == 0) ++length;
        return FrameSpan::Valid(length);
    }

    void Decode(const uint8_t* data, size_t size, DecodedFrame& frame) override {
        frame.address = (data[kAddressHighAt] << 7) + data[kAddressLowAt] + 1;
        const uint8_t opcode = data[kOpcodeAt];
        if (data[kHeadAt] == kHeadFourBytes) {
            if (opcode != kControl || !DecodeControl(data[kData1At], data[kData2At], data[kData3At], frame)) {
                Raw(frame, uint32_t{opcode} << 24 | uint32_t{data[kData1At]} << 16 | uint32_t{data[kData2At]} << 8 |
                               data[kData3At]);
            }
            return;
        }
        // Only raw commands pad their frame.
        if (size == kFourByteFrame || opcode != kPreset || !DecodePreset(data[kData1At], data[kData2At], frame)) {
            Raw(frame, uint32_t{opcode} << 16 | uint32_t{data[kData1At]} << 8 | data[kData2At]);
        }
    }

private:
    // Byte 4: tilt speed and zoom speed nibble; byte 5: pan speed and the
    // lens; byte 6: directions and focus near.
    static bool DecodeControl(uint8_t speeds, uint8_t panSpeed, uint8_t directions, DecodedFrame& frame) {
        const uint8_t lens = panSpeed & (kIrisOpen | kIrisClose | kFocusFar);
        if (lens != 0 || (directions & kFocusNear) != 0) return DecodeLens(speeds, panSpeed, directions, frame);
        if ((directions & ~kDirectionBits) != 0) return false;
        const int panField = panSpeed >> 3;
        const int tiltField = speeds & 0x0F;
        const int zoomField = speeds >> 4;
        int pan = 0, tilt = 0, zoom = 0;
        // The zoom nibble is 2 x magnitude - 1: always odd.
        if (zoomField % 2 == 0 && zoomField != 0) return false;
        if (!Axis(directions, kPanLeft, kPanRight, panField, PanTiltMagnitude(panField), pan) ||
            !Axis(directions, kTiltDown, kTiltUp, tiltField, PanTiltMagnitude(tiltField), tilt) ||
            !Axis(directions, kZoomOut, kZoomIn, zoomField, (zoomField + 1) / 2, zoom)) {
            return false;
        }
        DescribeMove(frame, pan, tilt, zoom);
        return true;
    }

    static bool DecodeLens(uint8_t speeds, uint8_t lens, uint8_t directions, DecodedFrame& frame) {
        if (speeds != 0) return false;
        if (directions == kFocusNear && lens == 0) return Lens(frame, "Focus", 1, FocusWords(1));
        if (directions != 0) return false;
        switch (lens) {
            case kIrisOpen: return Lens(frame, "Iris", 1, IrisWords(1));
            case kIrisClose: return Lens(frame, "Iris", -1, IrisWords(-1));
            case kFocusFar: return Lens(frame, "Focus", -1, FocusWords(-1));
            default: return false;
        }
    }

    static bool Lens(DecodedFrame& frame, const char* operation, int direction, std::string words) {
        Describe(frame, operation, {direction}, FrameKind::kMotion, std::move(words));
        return true;
    }

    // The function's high nibble holds the preset number's bits above 7.
    static bool DecodePreset(uint8_t function, uint8_t number, DecodedFrame& frame) {
        const int preset = (function >> 4) << 7 | number;
        int action;
        switch (function & 0x0F) {
            case kPresetFunctionStore: action = kPresetSet; break;
            case kPresetFunctionGoTo: action = kPresetGoTo; break;
            default: return false;
        }
        if (number > 0x7F) return false;
        Describe(frame, "Preset", {preset, action}, FrameKind::kOther, PresetWords(preset, action));
        return true;
    }
};

}  // namespace

std::unique_ptr<FrameReader> MakeBoschReader() { return std::make_unique<BoschReader>(); }

}  // namespace vorna
