#include "core/xml_document.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

using vorna::XmlDocument;

namespace {

const char* const kTooDeep = "Elements nested too deeply (exceeds the configured maximum parse depth).";

std::string Repeat(const std::string& piece, int times) {
    std::string text;
    for (int i = 0; i < times; ++i) text += piece;
    return text;
}

// `depth` nested elements with `innermost` as the content of the deepest one.
std::string Nested(int depth, const std::string& innermost = "") {
    return Repeat("<a>", depth) + innermost + Repeat("</a>", depth);
}

bool Parse(XmlDocument& document, const std::string& text) { return document.ParseText(text.data(), text.size()); }

// The depth of the deepest node in a parsed tree that began with '<'
// (anything but plain text), root element = 1.
int DeepestTag(const TiXmlNode& node, int depth) {
    int deepest = 0;
    for (const TiXmlNode* child = node.FirstChild(); child != nullptr; child = child->NextSibling()) {
        const TiXmlText* text = child->ToText();
        if (text == nullptr || text->CDATA()) deepest = std::max(deepest, depth + 1);
        deepest = std::max(deepest, DeepestTag(*child, depth + 1));
    }
    return deepest;
}

}  // namespace

TEST(XmlDocument, DepthLimit) {
    struct Row {
        const char* name;
        std::string text;
        int errorId;
    };
    const std::vector<Row> rows = {
        {"100 deep", Nested(100), 0},
        {"100 deep with text in the deepest", Nested(100, "text &amp; more"), 0},
        {"101 deep", Nested(101), 17},
        {"comment at depth 101", Nested(100, "<!-- c -->"), 17},
        {"CDATA at depth 101", Nested(100, "<![CDATA[x]]>"), 17},
        {"declaration at depth 101", Nested(100, "<?xml version='1.0'?>"), 17},
        {"unknown at depth 101", Nested(100, "<!DOCTYPE x>"), 17},
        {"empty element at depth 101", Nested(100, "<b/>"), 17},
        {"comment at depth 100", Nested(99, "<!-- <b><b> -->"), 0},
        {"'>' and '<' in quoted values", Nested(99, "<b x='>' y=\"<c>\"/>"), 0},
        {"'<' in CDATA", Nested(99, "<![CDATA[<b><b>]]>"), 0},
        {"second top-level element too deep", "<r/>" + Nested(101), 17},
        {"TinyXML's own error comes first", Nested(50, "<b x='1' x='2'>") + Nested(101),
         TiXmlBase::TIXML_ERROR_PARSING_ELEMENT},
        {"end tag mismatch before the depth", "<r><b></c>" + Nested(101) + "</r>",
         TiXmlBase::TIXML_ERROR_READING_END_TAG},
        {"prefix end tag is a mismatch", "<r><a></ab>" + Nested(101) + "</a></r>",
         TiXmlBase::TIXML_ERROR_READING_END_TAG},
        {"garbage after the root ends the document", "<r/>x" + Nested(101), 0},
        {"UTF-8 lead byte swallows a '<' in text", "\xEF\xBB\xBF" + Nested(100, "\xC3<b/>"), 0},
        {"legacy text keeps that '<'", Nested(100, "\xC3<b/>"), 17},
        {"hex entity swallows markup up to its ';'", Nested(100, "&#x<b>x1;"), 0},
    };
    for (const Row& row : rows) {
        XmlDocument document;
        EXPECT_EQ(Parse(document, row.text), row.errorId == 0) << row.name;
        EXPECT_EQ(document.ModuleErrorId(), row.errorId) << row.name;
        if (row.errorId == 17) {
            EXPECT_EQ(document.ModuleErrorDesc(), kTooDeep) << row.name;
        }
    }
}

TEST(XmlDocument, MillionDeepFailsCleanly) {
    XmlDocument document;
    EXPECT_FALSE(Parse(document, Nested(1000000)));
    EXPECT_EQ(document.ModuleErrorId(), 17);
    EXPECT_EQ(document.ModuleErrorDesc(), kTooDeep);
    EXPECT_FALSE(document.Error()) << "the guard leaves TinyXML's own flag clear";
}

TEST(XmlDocument, LengthIsHonouredAndNulStops) {
    const std::string text = "<a x='1'/><b";
    XmlDocument document;
    EXPECT_TRUE(document.ParseText(text.data(), 10));
    EXPECT_STREQ(document.RootElement()->Attribute("x"), "1");
    XmlDocument stopped;
    EXPECT_TRUE(Parse(stopped, std::string("<a/>\0<b", 7)));
}

TEST(XmlDocument, ModuleErrorOverridesTinyXmlWithoutTouchingIt) {
    XmlDocument document;
    ASSERT_TRUE(Parse(document, "<a/>"));
    document.SetModuleError(vorna::kErrorSaveFailed, "create error 13 - Permission denied");
    EXPECT_TRUE(document.Failed());
    EXPECT_FALSE(document.Error());
    EXPECT_EQ(document.ModuleErrorId(), 2);
    EXPECT_EQ(document.ModuleErrorDesc(), "create error 13 - Permission denied");
    ASSERT_FALSE(Parse(document, "<a>"));
    EXPECT_EQ(document.ModuleErrorId(), document.ErrorId()) << "a new parse forgets the module's error";
    EXPECT_EQ(document.ModuleErrorDesc(), document.ErrorDesc());
}

TEST(XmlDocument, LoadPathGuardsFilesToo) {
    char path[] = "/tmp/vorna-xml-XXXXXX";
    const int fd = mkstemp(path);
    ASSERT_GE(fd, 0);
    const std::string deep = Nested(101);
    ASSERT_EQ(write(fd, deep.data(), deep.size()), static_cast<ssize_t>(deep.size()));
    close(fd);
    XmlDocument document;
    EXPECT_FALSE(document.LoadPath(path));
    EXPECT_EQ(document.ModuleErrorId(), 17);

    FILE* file = std::fopen(path, "wb");
    std::fputs("<a x='1\r\n2'>\r</a>", file);
    std::fclose(file);
    ASSERT_TRUE(document.LoadPath(path));
    EXPECT_STREQ(document.RootElement()->Attribute("x"), "1\n2") << "line ends are normalised as TinyXML does";
    std::remove(path);

    EXPECT_FALSE(document.LoadPath(path));
    EXPECT_EQ(document.ModuleErrorId(), TiXmlBase::TIXML_ERROR_OPENING_FILE);
}

// Random fragments of markup, tricky bytes and broken syntax, put where the
// limit bites: the guard must say "too deep" exactly when unguarded TinyXML
// reaches a tag inside an element at the limit, and otherwise leave TinyXML's
// own verdict alone.
TEST(XmlDocument, GuardAgreesWithTinyXmlOnRandomText) {
    const std::vector<std::string> pieces = {
        "<a>", "<b>", "</a>", "</b>", "<a/>", "<b x='1'>", "<a x=\"<\">", "<a y='>'>", "<a z=q>", "<a z=>",
        "<!--", "-->", "<!-- c -->", "<![CDATA[", "]]>", "<![CDATA[x]]>", "<?xml", "?>", "<!DOCTYPE x>",
        "<?pi?>", ">", "<", "t", " ", "\n", "&amp;", "&#x", "&#", "x1;", "1;", "'", "\"", "\xC3", "\xF0",
        "\xEF\xBB\xBF", "=", "/", "< a>", "</ a>", "</a >", "<a x='1' x='2'>", "<_a>", "</_a>", "<1>", "</>",
        "<?XML encoding='UTF-8'?>", "<?xml encoding='x'?>"};
    const std::vector<std::string> heads = {"", "\xEF\xBB\xBF", "<?xml version='1.0'?>", "<?xml encoding='latin1'?>"};
    const std::vector<int> wrappers = {0, 96, 97, 98, 99};
    std::mt19937 random(20240601);
    int tooDeep = 0;
    for (int round = 0; round < 6000; ++round) {
        std::string fragment;
        const int count = 1 + static_cast<int>(random() % 24);
        for (int i = 0; i < count; ++i) fragment += pieces[random() % pieces.size()];
        const int wrap = wrappers[random() % wrappers.size()];
        const std::string text = heads[random() % heads.size()] + Repeat("<w>", wrap) + fragment + Repeat("</w>", wrap);

        std::string padded = text + std::string(4, '\0');
        TiXmlDocument plain;
        plain.Parse(padded.c_str(), nullptr, TIXML_ENCODING_UNKNOWN);
        const bool plainTooDeep = DeepestTag(plain, 0) > vorna::kMaxParseDepth;

        XmlDocument guarded;
        Parse(guarded, text);
        ASSERT_EQ(guarded.ModuleErrorId() == 17, plainTooDeep) << text;
        if (!plainTooDeep) {
            ASSERT_EQ(guarded.ModuleErrorId(), plain.ErrorId()) << text;
        }
        tooDeep += plainTooDeep;
    }
    EXPECT_GT(tooDeep, 300) << "the random text reaches the limit often enough to mean something";
}
