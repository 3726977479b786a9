#include "frame_log.h"

#include "monitor_print.h"
#include "printed_line.h"

namespace vorna_host {

std::string HexBytes(const uint8_t* bytes, size_t length) {
    static const char kDigits[] = "0123456789ABCDEF";
    std::string hex;
    for (size_t i = 0; i < length; ++i) {
        if (i > 0) hex += ' ';
        hex += kDigits[bytes[i] >> 4];
        hex += kDigits[bytes[i] & 0xF];
    }
    return hex;
}

void FrameLog::Add(long long milliseconds, const std::string& line, const std::string& hex,
                   const std::string& meaning) {
    {
        std::lock_guard<std::mutex> guard(mutex_);
        frames_.push_back(LoggedFrame{++lastSequence_, milliseconds, line, hex, meaning});
        if (frames_.size() > kKept) frames_.pop_front();
    }
    added_.notify_all();
}

std::vector<LoggedFrame> FrameLog::After(uint64_t sequence, std::chrono::milliseconds wait) {
    std::unique_lock<std::mutex> lock(mutex_);
    added_.wait_for(lock, wait, [&] { return closed_ || lastSequence_ > sequence; });
    return closed_ ? std::vector<LoggedFrame>() : AfterUnlocked(sequence);
}

std::vector<LoggedFrame> FrameLog::AfterUnlocked(uint64_t sequence) const {
    std::vector<LoggedFrame> after;
    for (const LoggedFrame& frame : frames_)
        if (frame.sequence > sequence) after.push_back(frame);
    return after;
}

void FrameLog::Close() {
    {
        std::lock_guard<std::mutex> guard(mutex_);
        closed_ = true;
    }
    added_.notify_all();
}

LoggedLine::LoggedLine(std::unique_ptr<SerialLine> line, const LineOption& option,
                       std::chrono::steady_clock::time_point start, FrameLog& log)
    : line_(std::move(line)),
      name_(option.name),
      start_(start),
      log_(log),
      decoder_(vorna::MakeFrameDecoder(option.protocol)) {}

bool LoggedLine::Send(const uint8_t* bytes, size_t length, std::string& error) {
    if (!line_->Send(bytes, length, error)) return false;
    const std::string meaning =
        decoder_ ? MessageMeaning(decoder_->Feed(reinterpret_cast<const char*>(bytes), length)) : std::string();
    log_.Add(MillisecondsSince(start_), name_, HexBytes(bytes, length), meaning);
    return true;
}

}  // namespace vorna_host
