#include "protocols/decode_families.h"
#include "protocols/decode_words.h"
#include "protocols/ge_ascii_wire.h"
#include "protocols/protocol.h"

namespace vorna {

namespace {

using namespace ge_ascii;

bool IsDigit(uint8_t c) { return c >= '0' && c <= '9'; }
// Address digits are counted from '0' without a range check, so an address
// out of range gives other printable characters.
bool IsAddressCharacter(uint8_t c) { return c >= ' ' && c < kFrameEnd; }

// Pan and tilt value s is half the magnitude less one, and 1 for the slowest
// magnitudes: magnitude 2 * (s + 1) reads back as s, and 2 as 1.
int PanTiltMagnitude(int value) { return value == 1 ? 2 : 2 * (value + 1); }

class GEASCIIReader : public FrameReader {
public:
    // The address characters and the end mark tell a frame; the value and
    // command positions may carry any byte (raw commands).
    FrameSpan Measure(const uint8_t* data, size_t size) const override {
        const size_t seen = size < kFrameSize ? size : static_cast<size_t>(kFrameSize);
        for (size_t at = kAddressAt; at < seen && at < kFrameEndAt; ++at) {
            if (!IsAddressCharacter(data[at])) return FrameSpan::NoStart();
        }
        if (seen < kFrameSize) return FrameSpan::NeedMore();
        if (data[kFrameEndAt] != kFrameEnd) return FrameSpan::NoStart();
        return FrameSpan::Valid(kFrameSize);
    }

    void Decode(const uint8_t* data, size_t, DecodedFrame& frame) override {
        frame.address = 0;
        for (int at = kAddressAt; at < kAddressAt + kAddressDigits; ++at)
            frame.address = frame.address * 10 + data[at] - '0';
        const char command = static_cast<char>(data[kCommandAt]);
        // Tens are counted from '0' without a range check.
        if (data[kValueTensAt] >= '0' && IsDigit(data[kValueOnesAt]) &&
            DecodeCommand(command, (data[kValueTensAt] - '0') * 10 + data[kValueOnesAt] - '0', frame)) {
            return;
        }
        const uint32_t raw = uint32_t{data[kValueTensAt]} << 16 | uint32_t{data[kValueOnesAt]} << 8 | data[kCommandAt];
        Describe(frame, "RawCommand", {static_cast<int>(raw)}, FrameKind::kOther, RawWords(raw));
    }

private:
    static bool DecodeCommand(char command, int value, DecodedFrame& frame) {
        if (command == kPresetSetLetter || command == kPresetGoToLetter) {
            const int action = command == kPresetSetLetter ? kPresetSet : kPresetGoTo;
            Describe(frame, "Preset", {value, action}, FrameKind::kOther, PresetWords(value, action));
            return true;
        }
        if (value > 0) return DecodeMotion(command, value, frame);
        if (command == kAutoFocusOn) {
            Describe(frame, "AutoFocus", {1}, FrameKind::kOther, "auto focus on");
            return true;
        }
        return DecodeLens(command, frame);
    }

    // One axis per frame: value and letter.
    static bool DecodeMotion(char command, int value, DecodedFrame& frame) {
        int axes[3] = {0, 0, 0};
        const DirectionLetters* letters[] = {&kPanLetters, &kTiltLetters, &kZoomLetters};
        for (int axis = 0; axis < 3; ++axis) {
            const int sign = command == letters[axis]->negative ? -1 : command == letters[axis]->positive ? 1 : 0;
            if (sign == 0) continue;
            // Zoom value is eight times the magnitude less one.
            if (axis == 2 && (value + 1) % 8 != 0) return false;
            axes[axis] = sign * (axis == 2 ? (value + 1) / 8 : PanTiltMagnitude(value));
            DescribeMove(frame, axes[0], axes[1], axes[2]);
            return true;
        }
        return false;
    }

    // Value "00": lens motion in upper case, stops in lower case, in the
    // StopAxes order pan, tilt, zoom, iris, focus.
    static bool DecodeLens(char command, DecodedFrame& frame) {
        const DirectionLetters* moves[] = {&kIrisLetters, &kFocusLetters};
        const char* const moveNames[] = {"Iris", "Focus"};
        for (int lens = 0; lens < 2; ++lens) {
            const int sign = Sign(*moves[lens], command);
            if (sign == 0) continue;
            Describe(frame, moveNames[lens], {sign}, FrameKind::kMotion,
                     lens == 0 ? IrisWords(sign) : FocusWords(sign));
            return true;
        }
        const DirectionLetters* stops[] = {&kStopPanLetters, &kStopTiltLetters, &kStopZoomLetters, &kStopIrisLetters,
                                           &kStopFocusLetters};
        static const char* const kStopWords[] = {"pan stop", "tilt stop", "zoom stop", "iris stop", "focus stop"};
        for (int axis = 0; axis < 5; ++axis) {
            const int sign = Sign(*stops[axis], command);
            if (sign == 0) continue;
            std::vector<int> args(5, 0);
            args[axis] = sign;
            Describe(frame, "StopAxes", std::move(args), FrameKind::kStop, kStopWords[axis]);
            return true;
        }
        return false;
    }

    static int Sign(const DirectionLetters& letters, char command) {
        return command == letters.negative ? -1 : command == letters.positive ? 1 : 0;
    }
};

}  // namespace

std::unique_ptr<FrameReader> MakeGEASCIIReader() { return std::make_unique<GEASCIIReader>(); }

}  // namespace vorna
