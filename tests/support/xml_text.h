// Text helpers for configuration documents without text content.
#pragma once

#include <sstream>
#include <string>

namespace vorna_test {

// The indented print of a document as one line: what the stream printer
// gives for the same document, since only indentation and line breaks differ.
inline std::string Flattened(const std::string& indented) {
    std::string line;
    std::string flat;
    std::istringstream lines(indented);
    while (std::getline(lines, line)) flat += line.substr(line.find_first_not_of(' '));
    return flat;
}

}  // namespace vorna_test
