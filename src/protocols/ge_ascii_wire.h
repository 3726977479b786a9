// The GE ASCII frame as it lies on the wire, shared by the builder and the
// decoder: a two-digit value, a command letter, the camera address in three
// digits and '~'. There is no checksum.
#pragma once

namespace vorna {
namespace ge_ascii {

constexpr char kFrameEnd = '~';
constexpr char kAutoFocusOn = '*';
constexpr char kPresetSetLetter = 'Q';
constexpr char kPresetGoToLetter = 'E';

// Motion letters; a stop sends the lower-case letter of the motion.
struct DirectionLetters {
    char negative;
    char positive;
};
constexpr DirectionLetters kPanLetters{'L', 'R'};
constexpr DirectionLetters kTiltLetters{'D', 'U'};
constexpr DirectionLetters kZoomLetters{'O', 'I'};
constexpr DirectionLetters kIrisLetters{'C', 'P'};
constexpr DirectionLetters kFocusLetters{'F', 'N'};
constexpr DirectionLetters kStopPanLetters{'l', 'r'};
constexpr DirectionLetters kStopTiltLetters{'d', 'u'};
constexpr DirectionLetters kStopZoomLetters{'o', 'i'};
constexpr DirectionLetters kStopIrisLetters{'c', 'p'};
constexpr DirectionLetters kStopFocusLetters{'f', 'n'};

enum FrameOffset { kValueTensAt, kValueOnesAt, kCommandAt, kAddressAt, kFrameEndAt = 6, kFrameSize };
constexpr int kAddressDigits = 3;

}  // namespace ge_ascii
}  // namespace vorna
