#include "protocols/decode_words.h"

#include <cstdio>

namespace vorna {

std::string AxisWords(const char* axis, int speed, const char* negative, const char* positive) {
    std::string words = axis;
    if (speed == 0) return words + " still";
    words += ' ';
    words += speed < 0 ? negative : positive;
    words += ' ';
    words += std::to_string(speed < 0 ? -static_cast<int64_t>(speed) : speed);
    return words;
}

std::string MoveWords(int pan, int tilt, int zoom) {
    if (pan == 0 && tilt == 0 && zoom == 0) return "stop pan, tilt and zoom";
    return AxisWords("pan", pan, "left", "right") + ", " + AxisWords("tilt", tilt, "down", "up") + ", " +
           AxisWords("zoom", zoom, "out", "in");
}

std::string PresetWords(int number, int action) {
    static const char* const kActions[] = {"store preset ", "go to preset ", "clear preset "};
    if (action < 0 || action > 2) return "preset " + std::to_string(number);
    return kActions[action] + std::to_string(number);
}

std::string PatternWords(int number, int action) {
    switch (action) {
        case 0: return "start recording pattern " + std::to_string(number);
        case 1: return "stop recording pattern";
        case 3: return "run pattern " + std::to_string(number);
        default: return "pattern command " + std::to_string(action);
    }
}

std::string IrisWords(int direction) {
    return direction > 0 ? "iris open" : direction < 0 ? "iris close" : "iris stop";
}

std::string FocusWords(int direction) {
    return direction > 0 ? "focus near" : direction < 0 ? "focus far" : "focus stop";
}

std::string RawWords(uint32_t value) {
    char text[32];
    std::snprintf(text, sizeof text, "raw command 0x%08X", value);
    return text;
}

void Describe(DecodedFrame& frame, const char* operation, std::vector<int> args, FrameKind kind, std::string meaning) {
    frame.operation = operation;
    frame.args = std::move(args);
    frame.kind = kind;
    frame.meaning = std::move(meaning);
}

void DescribeMove(DecodedFrame& frame, int pan, int tilt, int zoom) {
    const bool still = pan == 0 && tilt == 0 && zoom == 0;
    Describe(frame, "Move", {pan, tilt, zoom}, still ? FrameKind::kStop : FrameKind::kMotion,
             MoveWords(pan, tilt, zoom));
}

}  // namespace vorna
