// The parse-depth guard against TinyXML itself: the guard refuses exactly the
// texts in which TinyXML would start a node inside an element nested as deep
// as allowed, and a text it lets through parses exactly as TinyXML parses it.
#include <tinyxml.h>

#include <string>

#include "config/xml_document.h"
#include "host_session.h"

namespace {

using vorna_fuzz::Require;

// TinyXML recurses once per nesting level; beyond this size a text could
// exhaust the target's stack in TinyXML itself, which the guard exists to
// prevent.
constexpr size_t kLargestText = 8192;

// True when some element at the deepest allowed level has a child that began
// with '<' (anything but plain text), in the tree TinyXML built, complete or
// up to where it stopped.
bool StartsNodeTooDeep(const TiXmlNode& node, int depth) {
    for (const TiXmlNode* child = node.FirstChild(); child != nullptr; child = child->NextSibling()) {
        const TiXmlText* text = child->ToText();
        const bool startsWithTag = text == nullptr || text->CDATA();
        if (depth >= vorna::kMaxParseDepth && startsWithTag) return true;
        if (child->ToElement() != nullptr && StartsNodeTooDeep(*child, depth + 1)) return true;
    }
    return false;
}

std::string Print(const TiXmlDocument& document) {
    TiXmlPrinter printer;
    document.Accept(&printer);
    return printer.Str();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > kLargestText) return 0;
    const std::string text(reinterpret_cast<const char*>(data), size);
    vorna::XmlDocument guarded;
    guarded.ParseText(text.data(), text.size());
    const std::string padded = text + std::string(4, '\0');
    TiXmlDocument plain;
    plain.Parse(padded.c_str(), nullptr, TIXML_ENCODING_UNKNOWN);
    const bool refused = guarded.ModuleErrorId() == vorna::kErrorTooDeep;
    bool tooDeep = false;
    for (const TiXmlNode* top = plain.FirstChild(); top != nullptr && !tooDeep; top = top->NextSibling())
        if (top->ToElement() != nullptr) tooDeep = StartsNodeTooDeep(*top, 1);
    Require(refused == tooDeep, "the guard refuses exactly the texts TinyXML would nest too deeply");
    if (refused) return 0;
    Require(guarded.ErrorId() == plain.ErrorId() && guarded.ErrorRow() == plain.ErrorRow() &&
                guarded.ErrorCol() == plain.ErrorCol(),
            "a text the guard lets through fails as in TinyXML");
    Require(Print(guarded) == Print(plain), "a text the guard lets through parses as in TinyXML");
    return 0;
}
