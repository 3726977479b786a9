// The Panasonic frame as it lies on the wire, shared by the builder and the
// decoder: STX, "AD", the address in decimal (at least two digits), ";GC7:",
// a command of seven (or more) upper-case hex digits, ETX. No checksum.
#pragma once

#include <cstdint>

namespace vorna {
namespace panasonic {

constexpr char kStx = 0x02;
constexpr char kEtx = 0x03;

constexpr char kAutoIrisOn[] = "0021032";
constexpr char kAutoIrisOff[] = "0021034";
constexpr char kAutoIrisFollowUp[] = "0021005";
constexpr char kAutoFocusOn[] = "9030055";
constexpr char kAutoFocusOff[] = "9030056";
constexpr char kMenuOpen[] = "0021940";
constexpr char kMenuClose[] = "0021941";
constexpr char kMenuUp[] = "0021942";
constexpr char kMenuRight[] = "0021943";
constexpr char kMenuDown[] = "0021944";
constexpr char kMenuLeft[] = "0021945";
constexpr char kMenuEnter[] = "002194A";
constexpr char kFlip[] = "20213D1";
constexpr char kStartRecordingPattern[] = "2021494";
constexpr char kStopRecordingPattern[] = "2021491";
constexpr char kRunPattern[] = "2021490";

// Command prefixes followed by a number in hex.
constexpr char kMovePrefix[] = "902";
constexpr char kPresetPrefix[] = "90300";
constexpr char kIrisPrefix[] = "002";
constexpr char kFocusPrefix[] = "903400";

// The iris command's number for open, close and stop.
constexpr uint32_t kIrisOpen = 0x1002;
constexpr uint32_t kIrisClose = 0x1003;
constexpr uint32_t kIrisStop = 0x1004;

// The focus command's digit for near, far and stop.
constexpr uint32_t kFocusNear = 0x0;
constexpr uint32_t kFocusFar = 0x4;
constexpr uint32_t kFocusStop = 0x8;

// Stored presets are numbered 99 above the recalled ones, which start at 0
// for preset 1.
constexpr uint32_t kStoredPresetOffset = 99;
constexpr uint32_t kRecalledPresetOffset = 0u - 1;

constexpr uint32_t kZoomStill = 0x8;
constexpr uint32_t kZoomOutSpeeds = 0x4;

constexpr char kAddressMark[] = "AD";
constexpr char kCommandMark[] = ";GC7:";
constexpr int kCommandDigits = 7;

// The direction nibble of a move. Rows: pan left, still, right. Columns:
// tilt down, still, up.
constexpr uint32_t kDirections[3][3] = {
    {0xF, 0x8, 0x9},
    {0xE, 0x1, 0xA},
    {0xD, 0xC, 0xB},
};

}  // namespace panasonic
}  // namespace vorna
