// Reads operator commands line by line from a descriptor (standard input or
// a script), giving up as soon as a stop signal arrives.
#pragma once

#include <string>

#include "stop_signal.h"

namespace vorna_host {

class LineReader {
public:
    enum class Result { kLine, kEnd, kStopped };

    LineReader(int fd, StopSignal& stop) : fd_(fd), stop_(stop) {}

    // The next line without its line break; a last line without one counts.
    Result Next(std::string& line);

private:
    bool TakeBufferedLine(std::string& line);

    int fd_;
    StopSignal& stop_;
    std::string buffer_;
    bool ended_ = false;
};

}  // namespace vorna_host
