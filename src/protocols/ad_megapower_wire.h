// The AD MegaPower keyboard text as it lies on the wire, shared by the
// builder and the decoder. Every key sequence is an optional number, a key
// and the keyboard channel letter: "6Ma" selects monitor 6, "12#a" camera
// 12, "5Ra" pans right at speed 5, all on channel a.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vorna {
namespace ad_megapower {

constexpr size_t kChannelCount = 4;
// The monitor used for every selection without multi mode.
constexpr int kSingleMonitor = 6;

constexpr char kPresetSetKey = '^';
constexpr char kPresetGoToKey = '\\';
constexpr char kPatternKey = '\'';
// Special functions: a number, then '%'.
constexpr char kLensAutoFunction[] = "69%";
constexpr char kFlipFunction[] = "19%";
constexpr char kApplePeelFunction[] = "44%";

// Pattern codes: recording starts at 120 + number and stops with 120,
// running starts at 20 + number.
constexpr int kRecordPatternBase = 120;
constexpr int kStopRecordingCode = 120;
constexpr int kPatternAction2Code = 130;
constexpr int kRunPatternBase = 20;

inline char ChannelLetter(uint32_t channel) { return static_cast<char>('a' + channel); }

inline bool IsChannelLetter(char c) { return c >= 'a' && c <= 'd'; }

constexpr char kMonitorKey = 'M';
constexpr char kCameraKey = '#';
constexpr char kSpecialFunctionKey = '%';

// Motion and lens keys: negative, then positive direction.
constexpr char kPanKeys[] = "LR";
constexpr char kTiltKeys[] = "DU";
constexpr char kZoomKeys[] = "WT";
constexpr char kIrisKeys[] = "CO";
constexpr char kFocusKeys[] = "FN";

}  // namespace ad_megapower
}  // namespace vorna
