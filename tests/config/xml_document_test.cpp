#include "config/xml_document.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "support/temp_dir.h"

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
    // What the text shows, the text, the error id it parses with.
    const std::vector<std::tuple<const char*, std::string, int>> rows = {
        {"100 deep", Nested(100), 0},
        {"101 deep", Nested(101), 17},
        {"1,000,000 deep", Nested(1000000), 17},
        {"comment at depth 101", Nested(100, "<!-- c -->"), 17},
        {"CDATA at depth 101", Nested(100, "<![CDATA[x]]>"), 17},
        {"declaration at depth 101", Nested(100, "<?xml version='1.0'?>"), 17},
        {"markup inside a comment, CDATA or quoted value",
         Nested(99, "<!-- <b><b> --><![CDATA[<b><b>]]><b x='>' y=\"<c>\"/>"), 0},
        {"second top-level element too deep", "<r/>" + Nested(101), 17},
        {"TinyXML's own error comes first", Nested(50, "<b x='1' x='2'>" + Nested(101) + "</b>"),
         TiXmlBase::TIXML_ERROR_PARSING_ELEMENT},
        {"prefix end tag is a mismatch", "<r><a></ab>" + Nested(101) + "</a></r>",
         TiXmlBase::TIXML_ERROR_READING_END_TAG},
        {"garbage after the root ends the document", "<r/>x" + Nested(101), 0},
        {"a NUL ends the text", std::string(1, '\0') + Nested(101), TiXmlBase::TIXML_ERROR_DOCUMENT_EMPTY},
        {"UTF-8 lead byte swallows a '<' in text", "\xEF\xBB\xBF" + Nested(100, "\xC3<b/>"), 0},
        {"legacy text keeps that '<'", Nested(100, "\xC3<b/>"), 17},
        {"hex entity swallows markup up to its ';'", Nested(100, "&#x<b>x1;"), 0},
        {"blanks before the ends of tags", Repeat("<a >", 100) + "<b />" + Repeat("</a>", 100), 17},
        {"blanks before the ends of tags, at the limit", Repeat("<a >", 99) + "<b />" + Repeat("</a>", 99), 0},
        {"U+FFFE and U+FFFF are blanks in UTF-8 tags", "\xEF\xBB\xBF" + Repeat("<a \xEF\xBF\xBE>", 101), 17},
    };
    for (const auto& [name, text, errorId] : rows) {
        XmlDocument document;
        EXPECT_EQ(Parse(document, text), errorId == 0) << name;
        EXPECT_EQ(document.ModuleErrorId(), errorId) << name;
        if (errorId == 17) {
            EXPECT_EQ(document.ModuleErrorDesc(), kTooDeep) << name;
            EXPECT_FALSE(document.Error()) << name << ": the guard leaves TinyXML's own flag clear";
        }
    }
}

// The module's own number readers, taken for speed, read every text as
// TinyXML's queries do.
TEST(XmlDocument, ReadIntAndReadDoubleAgreeWithTinyXmlsQueries) {
    for (const char* text : {"12", " \t\n7", "-3", "+4", "0x1A", "12abc", "", " ", "-", "+-1", "4294967297",
                             "99999999999999999999", "-9223372036854775809", "2147483648", "-2147483649", "1 2",
                             "\xA0" "5", "0009", "-0", "2.5", "-0.5", "+.5", "5.", ".", "1.2.3", "1e", "1e3", "inf",
                             "nan", "2,5"}) {
        TiXmlElement element("e");
        element.SetAttribute("n", text);
        int tinyXmlInt = 77;
        int moduleInt = 77;
        EXPECT_EQ(vorna::ReadInt(element, "n", &moduleInt), element.QueryIntAttribute("n", &tinyXmlInt) == TIXML_SUCCESS)
            << text;
        EXPECT_EQ(moduleInt, tinyXmlInt) << text;
        double tinyXmlDouble = 77;
        double moduleDouble = 77;
        EXPECT_EQ(vorna::ReadDouble(element, "n", &moduleDouble),
                  element.QueryDoubleAttribute("n", &tinyXmlDouble) == TIXML_SUCCESS)
            << text;
        EXPECT_TRUE(moduleDouble == tinyXmlDouble || (std::isnan(moduleDouble) && std::isnan(tinyXmlDouble))) << text;
    }
    int untouched = 5;
    EXPECT_FALSE(vorna::ReadInt(TiXmlElement("e"), "n", &untouched));
    EXPECT_EQ(untouched, 5);
}

TEST(XmlDocument, ParseTakesExactlyTheGivenLengthAndForgetsTheLastError) {
    XmlDocument document;
    ASSERT_FALSE(Parse(document, Nested(101)));
    EXPECT_TRUE(document.ParseText("<a x='1'/><b", 10));
    EXPECT_STREQ(document.RootElement()->Attribute("x"), "1");
    EXPECT_TRUE(Parse(document, std::string("<a/>\0<b", 7))) << "a NUL ends the text";
}

TEST(XmlDocument, LoadPathGuardsAndNormalisesLineEnds) {
    vorna_test::TempDir dir;
    dir.Write("deep.xml", Nested(101));
    dir.Write("crlf.xml", "<a x='1\r\n2'>\r</a>");
    XmlDocument document;
    EXPECT_FALSE(document.LoadPath(dir.File("deep.xml")));
    EXPECT_EQ(document.ModuleErrorId(), 17);
    ASSERT_TRUE(document.LoadPath(dir.File("crlf.xml")));
    EXPECT_STREQ(document.RootElement()->Attribute("x"), "1\n2");
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
        "<?XML encoding='UTF-8'?>", "<?xml encoding='x'?>", "<a v''>", "<a v= 'x'/>", "<a v=\"&#x\">",
        "<a v='\xE2\x82'>"};
    const std::vector<std::string> heads = {"", "\xEF\xBB\xBF", "<?xml version='1.0'?>", "<?xml encoding='latin1'?>"};
    const std::vector<int> wrappers = {0, 96, 97, 98, 99};
    std::mt19937 random(20240601);
    int tooDeep = 0;
    for (int round = 0; round < 3000; ++round) {
        std::string fragment;
        const int count = 1 + static_cast<int>(random() % 24);
        for (int i = 0; i < count; ++i) fragment += pieces[random() % pieces.size()];
        const int wrap = wrappers[random() % wrappers.size()];
        const std::string text = heads[random() % heads.size()] + Repeat("<w>", wrap) + fragment + Repeat("</w>", wrap);

        TiXmlDocument plain;  // NUL-padded: TinyXML may step past the end after a UTF-8 lead byte
        plain.Parse((text + std::string(4, '\0')).c_str(), nullptr, TIXML_ENCODING_UNKNOWN);
        const bool plainTooDeep = DeepestTag(plain, 0) > vorna::kMaxParseDepth;
        XmlDocument guarded;
        Parse(guarded, text);
        ASSERT_EQ(guarded.ModuleErrorId(), plainTooDeep ? vorna::kErrorTooDeep : plain.ErrorId()) << text;
        tooDeep += plainTooDeep;
    }
    EXPECT_GT(tooDeep, 150) << "the random text reaches the limit often enough to mean something";
}
