// The plain words of decoded frames, alike for every family: "pan left 32",
// "tilt still", "go to preset 5".
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "protocols/frame_decoder.h"

namespace vorna {

// "pan left 32", "pan still": the signed speed as the executor passes it.
std::string AxisWords(const char* axis, int speed, const char* negative, const char* positive);
// "pan left 32, tilt still, zoom in 1"; "stop pan, tilt and zoom" when all three are still.
std::string MoveWords(int pan, int tilt, int zoom);
// "store preset 5", "go to preset 5", "clear preset 5"
std::string PresetWords(int number, int action);
// "start recording pattern 2", "stop recording pattern", "run pattern 2", "pattern command 2"
std::string PatternWords(int number, int action);
// "iris open", "iris close", "iris stop"; "focus near", "focus far", "focus stop"
std::string IrisWords(int direction);
std::string FocusWords(int direction);
// "raw command 0x00090000"
std::string RawWords(uint32_t value);

// Sets what a decoded frame does.
void Describe(DecodedFrame& frame, const char* operation, std::vector<int> args, FrameKind kind, std::string meaning);
// A Move frame: kStop when every axis is still.
void DescribeMove(DecodedFrame& frame, int pan, int tilt, int zoom);

}  // namespace vorna
