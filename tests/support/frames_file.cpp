// The frames file format, one item per line:
//
//   # comment                   where the rows below come from, and why
//   [Pelco-D]                   a section: a fresh object of that protocol
//   Move 1 -32 0 0 = FF 01 00 04 1F 00 24
//   PassThrough 3 "12Ra" = "6Ma3#a12Ra"
//   Menu 1 0 = -
//
// A row is an operation, its arguments (the camera address first), '=' and
// the bytes it must build: hex pairs, a quoted text without blanks (escapes
// \xNN, \\ and \"; \x20 is a blank), or '-' when it builds nothing. Numbers are
// written as C writes them: decimal or 0x hexadecimal, with an optional '-'.
// The rows of a section run in order on one object, so a stateful protocol
// carries what one row did into the next. Blank lines are ignored; '#' starts
// a comment only at the start of a line.
#include "support/frames_file.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace vorna_test {

namespace {

[[noreturn]] void Fail(const std::string& where, const std::string& message) {
    throw std::runtime_error(where + ": " + message);
}

std::string Unquote(const std::string& word, const std::string& where) {
    if (word.size() < 2 || word.back() != '"') Fail(where, "unterminated text " + word);
    std::string text;
    for (size_t i = 1; i + 1 < word.size(); ++i) {
        if (word[i] != '\\') {
            text += word[i];
        } else if (word[++i] == 'x') {
            text += static_cast<char>(std::stoi(word.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            text += word[i];
        }
    }
    return text;
}

long long Number(const std::string& word, const std::string& where) {
    size_t used = 0;
    try {
        const long long value = std::stoll(word, &used, 0);
        if (used == word.size()) return value;
    } catch (const std::exception&) {
    }
    Fail(where, "not a number: " + word);
}

// The words after '=': hex pairs, one quoted text, or '-'.
void ReadExpected(std::istringstream& words, FramesRow& row) {
    std::string word;
    while (words >> word) {
        if (word == "-" && row.expected.empty() && !(words >> std::ws).good()) return;
        if (word[0] == '"' && row.expected.empty()) {
            row.textNotation = true;
            row.expected = Unquote(word, row.where);
            if ((words >> std::ws).good()) Fail(row.where, "unexpected text after the bytes");
            return;
        }
        size_t used = 0;
        const int byte = word.size() == 2 && std::isxdigit(word[0]) ? std::stoi(word, &used, 16) : -1;
        if (used != 2) Fail(row.where, "not a hex byte: " + word);
        row.expected += static_cast<char>(byte);
    }
    if (row.expected.empty()) Fail(row.where, "no bytes after '='");
}

}  // namespace

std::vector<FramesRow> ReadFramesFile(const std::string& path) {
    std::ifstream in(path);
    if (!in) throw std::runtime_error("cannot read " + path);
    const std::string name = path.substr(path.rfind('/') + 1);
    std::vector<FramesRow> rows;
    std::string protocol, line;
    int section = 0;
    for (int number = 1; std::getline(in, line); ++number) {
        const std::string where = name + ":" + std::to_string(number);
        std::istringstream words(line);
        FramesRow row{protocol, section, "", {}, "", false, where};
        if (!(words >> row.operation) || row.operation[0] == '#') continue;
        if (row.operation[0] == '[') {
            const size_t open = line.find('['), close = line.rfind(']');
            if (close == std::string::npos) Fail(where, "unterminated section");
            protocol = line.substr(open + 1, close - open - 1);
            ++section;
            continue;
        }
        if (protocol.empty()) Fail(where, "row before the first [Protocol] section");
        std::string word;
        while (words >> word && word != "=") {
            FrameArg arg;
            arg.isText = word[0] == '"';
            if (arg.isText)
                arg.text = Unquote(word, where);
            else
                arg.number = Number(word, where);
            row.args.push_back(arg);
        }
        if (word != "=") Fail(where, "no '=' in the row");
        ReadExpected(words, row);
        rows.push_back(row);
    }
    return rows;
}

std::vector<std::string> FramesFilesIn(const std::string& directory) {
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::directory_iterator(directory))
        if (entry.path().extension() == ".frames") paths.push_back(entry.path().string());
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
