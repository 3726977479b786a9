#include "line_reader.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>

namespace vorna_host {

bool LineReader::TakeBufferedLine(std::string& line) {
    const size_t newline = buffer_.find('\n');
    if (newline == std::string::npos) return false;
    line = buffer_.substr(0, newline);
    buffer_.erase(0, newline + 1);
    return true;
}

LineReader::Result LineReader::Answer(const std::string& question, FILE* out, std::string& answer) {
    if (console_ == nullptr) {
        std::fputs(question.c_str(), out);
        std::fflush(out);
        return Next(answer);
    }
    console_->SetPrompt(question);
    const Result result = Next(answer);
    console_->RestorePrompt();
    return result;
}

LineReader::Result LineReader::Next(std::string& line) {
    if (console_ != nullptr) {
        switch (console_->Next(line)) {
            case Console::Result::kLine: return Result::kLine;
            case Console::Result::kEnd: return Result::kEnd;
            case Console::Result::kStopped: return Result::kStopped;
        }
    }
    for (;;) {
        if (stop_.Raised()) return Result::kStopped;
        if (TakeBufferedLine(line)) return Result::kLine;
        if (ended_) {
            if (buffer_.empty()) return Result::kEnd;
            line.swap(buffer_);
            buffer_.clear();
            return Result::kLine;
        }
        pollfd entries[2] = {{fd_, POLLIN, 0}, {stop_.fd(), POLLIN, 0}};
        if (poll(entries, 2, -1) < 0 && errno != EINTR) return Result::kEnd;
        if (entries[0].revents == 0) continue;
        char chunk[4096];
        const ssize_t count = read(fd_, chunk, sizeof chunk);
        if (count > 0)
            buffer_.append(chunk, static_cast<size_t>(count));
        else if (count == 0 || (errno != EINTR && errno != EAGAIN))
            ended_ = true;
    }
}

}  // namespace vorna_host
