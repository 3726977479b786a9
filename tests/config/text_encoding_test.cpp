#include "config/text_encoding.h"

#include <gtest/gtest.h>

using namespace vorna;

TEST(TextEncoding, WellFormedUtf8StaysAndAnythingElseIsReadAsLatin1) {
    const struct {
        std::string text;
        std::string stored;
    } rows[] = {
        {"", ""},
        {"Door 1", "Door 1"},
        {"Entr\xC3\xA9" "e", "Entr\xC3\xA9" "e"},
        {"\xE2\x82\xAC \xF0\x9F\x93\xB7 \xF4\x8F\xBF\xBF", "\xE2\x82\xAC \xF0\x9F\x93\xB7 \xF4\x8F\xBF\xBF"},
        {"Entr\xE9" "e", "Entr\xC3\xA9" "e"},
        {"\xFF\x80", "\xC3\xBF\xC2\x80"},
        // Half a sequence, overlong forms, surrogates and code points past
        // U+10FFFF are not UTF-8: every byte of the text is taken as Latin-1.
        {"\xC3", "\xC3\x83"},
        {"\xE2\x82", "\xC3\xA2\xC2\x82"},
        {"\xC0\xAF", "\xC3\x80\xC2\xAF"},
        {"\xE0\x80\xAF", "\xC3\xA0\xC2\x80\xC2\xAF"},
        {"\xED\xA0\x80", "\xC3\xAD\xC2\xA0\xC2\x80"},
        {"\xF4\x90\x80\x80", "\xC3\xB4\xC2\x90\xC2\x80\xC2\x80"},
        {"\xC3\xA9\xE9", "\xC3\x83\xC2\xA9\xC3\xA9"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(AsUtf8(row.text), row.stored) << row.text;
        EXPECT_TRUE(IsUtf8(AsUtf8(row.text))) << row.text;
    }
    // The end of the text counts, not the bytes that happen to lie beyond it.
    EXPECT_FALSE(IsUtf8(std::string_view("\xC3\xA9", 1)));
}
