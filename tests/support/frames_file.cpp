// The frames file format, one item per line:
//
//   # comment                   where the rows below come from, and why
//   [Pelco-D]                   a section: a fresh object of that protocol
//   Move 1 -32 0 0 = FF 01 00 04 1F 00 24
//   PassThrough 3 "12Ra" = "6Ma3#a12Ra"
//   Menu 1 0 = -
//
// A row is an operation, its arguments (the camera address first), '=' and
// the bytes it must build: hex pairs, a quoted text (\xNN, \\ and \" escape),
// or '-' when it builds nothing. Numbers are decimal or 0x hexadecimal, with
// an optional '-'. The rows of a section run in order on one object, so a
// stateful protocol carries what one row did into the next. Blank lines are
// ignored; a '#' starts a comment only at the start of a line.
#include "support/frames_file.h"

#include <dirent.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace vorna_test {

namespace {

class LineScanner {
public:
    LineScanner(const std::string& line, const std::string& where) : line_(line), where_(where) {}

    bool AtEnd() {
        SkipBlanks();
        return at_ >= line_.size();
    }
    char Peek() { return AtEnd() ? '\0' : line_[at_]; }

    std::string Word() {
        SkipBlanks();
        const size_t start = at_;
        while (at_ < line_.size() && !std::isspace(static_cast<unsigned char>(line_[at_]))) ++at_;
        return line_.substr(start, at_ - start);
    }

    long long Number() {
        const std::string word = Word();
        const bool negative = !word.empty() && word[0] == '-';
        const std::string digits = word.substr(negative ? 1 : 0);
        const bool hex = digits.size() > 2 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X');
        errno = 0;
        char* end = nullptr;
        const unsigned long long magnitude = std::strtoull(digits.c_str(), &end, hex ? 16 : 10);
        if (digits.empty() || !std::isxdigit(static_cast<unsigned char>(digits.back())) || *end != '\0' ||
            errno != 0)
            Fail("not a number: " + word);
        return negative ? -static_cast<long long>(magnitude) : static_cast<long long>(magnitude);
    }

    std::string QuotedText() {
        SkipBlanks();
        std::string text;
        for (++at_; at_ < line_.size() && line_[at_] != '"'; ++at_) {
            if (line_[at_] != '\\') {
                text += line_[at_];
                continue;
            }
            if (++at_ >= line_.size()) break;
            if (line_[at_] == 'x' && at_ + 2 < line_.size()) {
                text += static_cast<char>(std::stoi(line_.substr(at_ + 1, 2), nullptr, 16));
                at_ += 2;
            } else {
                text += line_[at_];
            }
        }
        if (at_ >= line_.size()) Fail("unterminated text");
        ++at_;
        return text;
    }

    std::string HexBytes() {
        std::string bytes;
        while (!AtEnd()) {
            const std::string pair = Word();
            if (pair.size() != 2 || !std::isxdigit(static_cast<unsigned char>(pair[0])) ||
                !std::isxdigit(static_cast<unsigned char>(pair[1])))
                Fail("not a hex byte: " + pair);
            bytes += static_cast<char>(std::stoi(pair, nullptr, 16));
        }
        return bytes;
    }

    [[noreturn]] void Fail(const std::string& message) const { throw std::runtime_error(where_ + ": " + message); }

private:
    void SkipBlanks() {
        while (at_ < line_.size() && std::isspace(static_cast<unsigned char>(line_[at_]))) ++at_;
    }

    const std::string& line_;
    const std::string& where_;
    size_t at_ = 0;
};

void ReadExpected(LineScanner& scan, FramesRow& row) {
    if (scan.Peek() == '"') {
        row.textNotation = true;
        row.expected = scan.QuotedText();
    } else if (scan.Peek() == '-') {
        scan.Word();
    } else {
        row.expected = scan.HexBytes();
        if (row.expected.empty()) scan.Fail("no bytes after '='");
    }
    if (!scan.AtEnd()) scan.Fail("unexpected text after the bytes");
}

FramesRow ReadRow(LineScanner& scan, const std::string& protocol, int section, const std::string& where) {
    if (protocol.empty()) scan.Fail("row before the first [Protocol] section");
    FramesRow row;
    row.protocol = protocol;
    row.section = section;
    row.where = where;
    row.operation = scan.Word();
    while (!scan.AtEnd() && scan.Peek() != '=') {
        FrameArg arg;
        arg.isText = scan.Peek() == '"';
        if (arg.isText)
            arg.text = scan.QuotedText();
        else
            arg.number = scan.Number();
        row.args.push_back(arg);
    }
    if (scan.AtEnd()) scan.Fail("no '=' in the row");
    scan.Word();
    ReadExpected(scan, row);
    return row;
}

}  // namespace

std::vector<FramesRow> ReadFramesFile(const std::string& path) {
    std::ifstream in(path);
    if (!in) throw std::runtime_error("cannot read " + path);
    const std::string name = path.substr(path.rfind('/') + 1);
    std::vector<FramesRow> rows;
    std::string protocol;
    int section = 0;
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        const std::string where = name + ":" + std::to_string(number);
        LineScanner scan(line, where);
        if (scan.AtEnd() || scan.Peek() == '#') continue;
        if (scan.Peek() == '[') {
            const size_t open = line.find('['), close = line.rfind(']');
            if (close == std::string::npos || close < open) scan.Fail("unterminated section");
            protocol = line.substr(open + 1, close - open - 1);
            ++section;
            continue;
        }
        rows.push_back(ReadRow(scan, protocol, section, where));
    }
    return rows;
}

std::vector<std::string> FramesFilesIn(const std::string& directory) {
    std::vector<std::string> paths;
    DIR* dir = opendir(directory.c_str());
    if (dir == nullptr) throw std::runtime_error("cannot list " + directory);
    const std::string suffix = ".frames";
    while (const dirent* entry = readdir(dir)) {
        const std::string name = entry->d_name;
        if (name.size() > suffix.size() && name.compare(name.size() - suffix.size(), suffix.size(), suffix) == 0)
            paths.push_back(directory + "/" + name);
    }
    closedir(dir);
    std::sort(paths.begin(), paths.end());
    return paths;
}

std::string FrameNotation(const std::string& bytes, bool text) {
    static const char kDigits[] = "0123456789ABCDEF";
    if (bytes.empty()) return "-";
    std::string written = text ? "\"" : "";
    for (unsigned char byte : bytes) {
        const bool plain = text && byte >= 0x20 && byte < 0x7F && byte != '"' && byte != '\\';
        if (plain) {
            written += static_cast<char>(byte);
            continue;
        }
        if (text && (byte == '"' || byte == '\\')) {
            written += '\\';
            written += static_cast<char>(byte);
            continue;
        }
        if (!text && !written.empty()) written += ' ';
        written += text ? "\\x" : "";
        written += kDigits[byte >> 4];
        written += kDigits[byte & 0xF];
    }
    return text ? written + "\"" : written;
}

}  // namespace vorna_test
