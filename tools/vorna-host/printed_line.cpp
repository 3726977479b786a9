#include "printed_line.h"

#include "frame_log.h"

#include <cerrno>
#include <cstring>

#include "known_protocols.h"
#include "monitor_print.h"

namespace vorna_host {

long long MillisecondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start).count();
}

std::string TimeColumn(long long milliseconds) {
    char time[32];
    std::snprintf(time, sizeof time, "%7lld ms  ", milliseconds);
    return time;
}

std::string FormatFrame(long long milliseconds, const std::string& lineName, const uint8_t* bytes, size_t length,
                        bool textFrames) {
    std::string printed = TimeColumn(milliseconds) + lineName + " ";
    if (length > 0) printed += " " + HexBytes(bytes, length);
    if (textFrames) {
        printed += "  |";
        for (size_t i = 0; i < length; ++i) {
            const bool printable = bytes[i] >= 0x20 && bytes[i] < 0x7F;
            printed += printable ? static_cast<char>(bytes[i]) : '.';
        }
        printed += '|';
    }
    return printed + '\n';
}

PrintedLine::PrintedLine(const LineOption& line, std::chrono::steady_clock::time_point start, FILE* out)
    : name_(line.name),
      textFrames_(FindKnownProtocol(line.protocol)->textFrames),
      start_(start),
      out_(out),
      meaning_(line.meaning ? vorna::MakeFrameDecoder(line.protocol) : nullptr) {}

bool PrintedLine::Send(const uint8_t* bytes, size_t length, std::string& error) {
    std::string printed = FormatFrame(MillisecondsSince(start_), name_, bytes, length, textFrames_);
    if (meaning_) {
        std::vector<vorna::DecodedFrame> frames = meaning_->Feed(reinterpret_cast<const char*>(bytes), length);
        printed.insert(printed.size() - 1, "  = " + MessageMeaning(frames));
    }
    // One write per frame keeps frames whole when the worker and an operator
    // command print at the same moment.
    if (std::fwrite(printed.data(), 1, printed.size(), out_) != printed.size() || std::fflush(out_) != 0) {
        error = std::string("cannot print frame: ") + std::strerror(errno);
        return false;
    }
    return true;
}

}  // namespace vorna_host
