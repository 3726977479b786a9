// Text the module keeps from a document must load again from the file it
// writes, which is read as UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace vorna {

// True when `text` is well-formed UTF-8 (no overlong forms, no surrogates,
// nothing above U+10FFFF).
bool IsUtf8(std::string_view text);

// `text` unchanged when it is well-formed UTF-8; otherwise read as Latin-1,
// each byte from 0x80 to 0xFF becoming its own code point.
std::string AsUtf8(const std::string& text);

}  // namespace vorna
