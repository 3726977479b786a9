#include "config/text_encoding.h"

#include <cstddef>

namespace vorna {

namespace {

// The range the second byte of a sequence must fall in, by its lead byte;
// the bytes after it are plain continuation bytes. 0 trailing bytes marks a
// byte that cannot lead.
struct LeadRule {
    int trailing;
    unsigned char secondLow;
    unsigned char secondHigh;
};

LeadRule RuleFor(unsigned char lead) {
    if (lead < 0x80) return {0, 0, 0};
    if (lead >= 0xC2 && lead <= 0xDF) return {1, 0x80, 0xBF};
    if (lead == 0xE0) return {2, 0xA0, 0xBF};
    if (lead == 0xED) return {2, 0x80, 0x9F};
    if (lead >= 0xE1 && lead <= 0xEF) return {2, 0x80, 0xBF};
    if (lead == 0xF0) return {3, 0x90, 0xBF};
    if (lead >= 0xF1 && lead <= 0xF3) return {3, 0x80, 0xBF};
    if (lead == 0xF4) return {3, 0x80, 0x8F};
    return {-1, 0, 0};
}

bool InRange(unsigned char byte, unsigned char low, unsigned char high) { return byte >= low && byte <= high; }

}  // namespace

bool IsUtf8(std::string_view text) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
    const size_t size = text.size();
    for (size_t i = 0; i < size;) {
        const LeadRule rule = RuleFor(bytes[i]);
        if (rule.trailing < 0 || size - i <= static_cast<size_t>(rule.trailing)) return false;
        if (rule.trailing > 0 && !InRange(bytes[i + 1], rule.secondLow, rule.secondHigh)) return false;
        for (int k = 2; k <= rule.trailing; ++k)
            if (!InRange(bytes[i + k], 0x80, 0xBF)) return false;
        i += static_cast<size_t>(rule.trailing) + 1;
    }
    return true;
}

std::string AsUtf8(const std::string& text) {
    if (IsUtf8(text)) return text;
    std::string converted;
    converted.reserve(text.size() * 2);
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            converted += c;
        } else {
            converted += static_cast<char>(0xC0 | (byte >> 6));
            converted += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return converted;
}

}  // namespace vorna
