// The frames that went out on the lines, as the panel's live log shows them:
// the latest few kept, each with its line, bytes and meaning, and a wait for
// the next one for each page that follows the log.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "options.h"
#include "protocols/frame_decoder.h"
#include "serial_line.h"

namespace vorna_host {

struct LoggedFrame {
    uint64_t sequence = 0;  // counts from 1
    long long milliseconds = 0;  // since the host started
    std::string line;
    std::string hex;      // "FF 01 00 04 1F 00 24"
    std::string meaning;  // "address 1: pan left 32, tilt still, zoom still"
};

class FrameLog {
public:
    static constexpr size_t kKept = 200;

    void Add(long long milliseconds, const std::string& line, const std::string& hex, const std::string& meaning);
    // The frames after `sequence` that are still kept; when there are none,
    // waits up to `wait` for one. Empty once the log is closed.
    std::vector<LoggedFrame> After(uint64_t sequence, std::chrono::milliseconds wait);
    // Ends every wait: the host is closing.
    void Close();

private:
    std::vector<LoggedFrame> AfterUnlocked(uint64_t sequence) const;

    std::mutex mutex_;
    std::condition_variable added_;
    std::deque<LoggedFrame> frames_;
    uint64_t lastSequence_ = 0;
    bool closed_ = false;
};

// A line whose frames also go into a FrameLog once the line took them.
class LoggedLine : public SerialLine {
public:
    LoggedLine(std::unique_ptr<SerialLine> line, const LineOption& option, std::chrono::steady_clock::time_point start,
               FrameLog& log);

    bool Send(const uint8_t* bytes, size_t length, std::string& error) override;
    size_t Unsent() override { return line_->Unsent(); }
    Handover HandedAt() const override { return line_->HandedAt(); }

private:
    std::unique_ptr<SerialLine> line_;
    std::string name_;
    std::chrono::steady_clock::time_point start_;
    FrameLog& log_;
    std::unique_ptr<vorna::FrameDecoder> decoder_;
};

// "FF 01 00 04 1F 00 24".
std::string HexBytes(const uint8_t* bytes, size_t length);

}  // namespace vorna_host
