// Reads operator commands line by line from a descriptor (standard input or
// a script), giving up as soon as a stop signal arrives.
#pragma once

#include <cstdio>
#include <string>

#include "console.h"
#include "stop_signal.h"

namespace vorna_host {

class LineReader {
public:
    enum class Result { kLine, kEnd, kStopped };

    LineReader(int fd, StopSignal& stop) : fd_(fd), stop_(stop) {}

    // The next line without its line break; a last line without one counts.
    Result Next(std::string& line);

    // The operator's answer to `question`: the console's prompt while it
    // waits, or the question printed on `out` before the next line.
    Result Answer(const std::string& question, FILE* out, std::string& answer);

    // Reads through `console` (a terminal with line editing) from now on;
    // null: straight from the descriptor.
    void UseConsole(Console* console) { console_ = console; }

private:
    bool TakeBufferedLine(std::string& line);

    int fd_;
    StopSignal& stop_;
    std::string buffer_;
    bool ended_ = false;
    Console* console_ = nullptr;
};

}  // namespace vorna_host
