// A virtual line: no device, each frame is printed to standard output as one
// line (milliseconds since the host started, line name, hex bytes, and for
// text protocols the frame as text).
#pragma once

#include <chrono>
#include <cstdio>
#include <memory>
#include <string>

#include "options.h"
#include "protocols/frame_decoder.h"
#include "serial_line.h"

namespace vorna_host {

// Milliseconds since `start`: the time of every line the host prints.
long long MillisecondsSince(std::chrono::steady_clock::time_point start);
// "    250 ms  ": the time column of those lines.
std::string TimeColumn(long long milliseconds);

// "    250 ms  COM1  FF 01 00 04 1F 00 24", followed for text frames by
// "  |.AD01;GC7:9028100.|" with every byte outside printable ASCII shown as '.'.
std::string FormatFrame(long long milliseconds, const std::string& lineName, const uint8_t* bytes, size_t length,
                        bool textFrames);

// Prints each frame of `line` with, unless the line is raw, what it does
// ("  = address 1: pan left 32, tilt still, zoom still").
class PrintedLine : public SerialLine {
public:
    PrintedLine(const LineOption& line, std::chrono::steady_clock::time_point start, FILE* out);

    bool Send(const uint8_t* bytes, size_t length, std::string& error) override;
    // A frame shows when it would have gone out whole at the line's baud rate.
    Handover HandedAt() const override { return Handover::kLastByte; }

private:
    std::string name_;
    bool textFrames_;
    std::chrono::steady_clock::time_point start_;
    FILE* out_;
    std::unique_ptr<vorna::FrameDecoder> meaning_;  // null for a raw line
};

}  // namespace vorna_host
