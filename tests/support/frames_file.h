// Golden frames kept as data: what each protocol operation must build.
// Read by the frame tests and by anything else that wants the same rows
// (a decoder reads a row's bytes back into its operation and arguments).
// The file format is described in frames_file.cpp.
#pragma once

#include <string>
#include <vector>

namespace vorna_test {

// One argument as written: a whole number, or a quoted text.
struct FrameArg {
    bool isText = false;
    long long number = 0;
    std::string text;
};

struct FramesRow {
    std::string protocol;   // the protocol name of the row's section
    int section = 0;        // rows of one section share one protocol object
    std::string operation;  // a CProtocol operation ("Move", "Preset", ...)
    std::vector<FrameArg> args;  // the first is the camera address
    std::string expected;   // the bytes; empty when the operation builds nothing
    bool textNotation = false;  // the bytes were written as text
    std::string where;      // "file:line"
};

// Every row of one file, in file order; throws std::runtime_error naming
// "file:line" for a line that is not a comment, section or row.
std::vector<FramesRow> ReadFramesFile(const std::string& path);

// Every *.frames file in `directory`, sorted by name.
std::vector<std::string> FramesFilesIn(const std::string& directory);

// How a row's bytes are written back: hex pairs, or quoted text with \xNN
// escapes for bytes outside printable ASCII.
std::string FrameNotation(const std::string& bytes, bool text);

}  // namespace vorna_test
