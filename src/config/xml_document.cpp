#include "config/xml_document.h"

#include <cstdio>
#include <set>
#include <utility>
#include <vector>

namespace vorna {

namespace {

const char* const kTooDeepDescription =
    "Elements nested too deeply (exceeds the configured maximum parse depth).";

// TinyXML steps over a UTF-8 lead byte by up to four bytes at once, even
// across the terminating NUL. Four more NULs keep every such step inside the
// buffer, for the guard and for TinyXML alike.
constexpr size_t kNulPadding = 4;

// TinyXML's file load turns CR LF and lone CR into LF up to the first NUL and
// terminates the text there; the bytes after it stay as they were.
void NormaliseLineEnds(std::string& buffer) {
    const char* read = buffer.c_str();
    char* write = &buffer[0];
    while (*read != '\0') {
        if (*read == '\r') {
            *write++ = '\n';
            ++read;
            if (*read == '\n') ++read;
        } else {
            *write++ = *read++;
        }
    }
    *write = '\0';
}

}  // namespace

// Follows TinyXML's parser node by node over the same bytes, with the same
// encoding rules, and stops where TinyXML would stop. Leaf nodes (text,
// comments, CDATA, declarations, unknowns) are skipped with TinyXML's own
// node parsers, which do not recurse; only elements nest, and they are walked
// with an explicit stack of open element names, so neither stack nor memory
// grows with the depth of the text.
class XmlDocument::DepthScanner {
public:
    // True when TinyXML, before stopping for any other reason, would parse a
    // child node inside an element at the maximum depth.
    static bool TooDeep(const char* text);

private:
    enum class NodeKind { kNone, kDeclaration, kComment, kCData, kUnknown, kElement };

    // Where the walk of one top-level element ended: `next` is null when
    // TinyXML stops inside it.
    struct ElementEnd {
        const char* next;
        bool tooDeep;
    };

    // A parsed start tag: `next` is null when TinyXML fails on it.
    struct StartTag {
        const char* next = nullptr;
        bool hasContent = false;
        std::string name;
    };

    static NodeKind Identify(const char* p, TiXmlEncoding encoding);
    static const char* SkipLeaf(NodeKind kind, const char* p, TiXmlEncoding encoding);
    static ElementEnd SkipElement(const char* p, TiXmlEncoding encoding);
    static StartTag ReadStartTag(const char* p, TiXmlEncoding encoding);
    static const char* ReadEndTag(const char* p, const std::string& name, TiXmlEncoding encoding);
    static bool StartsWithUtf8Mark(const char* p);
    static TiXmlEncoding DeclaredEncoding(const TiXmlDeclaration& declaration);
};

bool XmlDocument::DepthScanner::TooDeep(const char* p) {
    if (p == nullptr || *p == '\0') return false;
    TiXmlEncoding encoding = StartsWithUtf8Mark(p) ? TIXML_ENCODING_UTF8 : TIXML_ENCODING_UNKNOWN;
    p = SkipWhiteSpace(p, encoding);
    while (p != nullptr && *p != '\0') {
        const NodeKind kind = Identify(p, encoding);
        if (kind == NodeKind::kNone) break;
        if (kind == NodeKind::kElement) {
            const ElementEnd end = SkipElement(p, encoding);
            if (end.tooDeep) return true;
            p = end.next;
        } else if (kind == NodeKind::kDeclaration && encoding == TIXML_ENCODING_UNKNOWN) {
            // The first top-level declaration fixes the encoding of what follows.
            TiXmlDeclaration declaration;
            p = declaration.Parse(p, nullptr, encoding);
            encoding = DeclaredEncoding(declaration);
        } else {
            p = SkipLeaf(kind, p, encoding);
        }
        p = SkipWhiteSpace(p, encoding);
    }
    return false;
}

XmlDocument::DepthScanner::NodeKind XmlDocument::DepthScanner::Identify(const char* p, TiXmlEncoding encoding) {
    p = SkipWhiteSpace(p, encoding);
    if (p == nullptr || *p != '<') return NodeKind::kNone;
    if (StringEqual(p, "<?xml", true, encoding)) return NodeKind::kDeclaration;
    if (StringEqual(p, "<!--", false, encoding)) return NodeKind::kComment;
    if (StringEqual(p, "<![CDATA[", false, encoding)) return NodeKind::kCData;
    if (StringEqual(p, "<!", false, encoding)) return NodeKind::kUnknown;
    if (IsAlpha(p[1], encoding) || p[1] == '_') return NodeKind::kElement;
    return NodeKind::kUnknown;
}

const char* XmlDocument::DepthScanner::SkipLeaf(NodeKind kind, const char* p, TiXmlEncoding encoding) {
    switch (kind) {
        case NodeKind::kDeclaration: {
            TiXmlDeclaration declaration;
            return declaration.Parse(p, nullptr, encoding);
        }
        case NodeKind::kComment: {
            TiXmlComment comment;
            return comment.Parse(p, nullptr, encoding);
        }
        case NodeKind::kCData: {
            TiXmlText cdata("");
            cdata.SetCDATA(true);
            return cdata.Parse(p, nullptr, encoding);
        }
        default: {
            TiXmlUnknown unknown;
            return unknown.Parse(p, nullptr, encoding);
        }
    }
}

XmlDocument::DepthScanner::ElementEnd XmlDocument::DepthScanner::SkipElement(const char* p,
                                                                             TiXmlEncoding encoding) {
    std::vector<std::string> open;  // elements whose content is being read, outermost first
    for (;;) {
        StartTag tag = ReadStartTag(p, encoding);
        if (tag.next == nullptr) return {nullptr, false};
        p = tag.next;
        if (tag.hasContent) open.push_back(std::move(tag.name));
        // The content of the innermost open element, up to its next child
        // element or past the end of the outermost one.
        for (;;) {
            if (open.empty()) return {p, false};
            const char* withWhiteSpace = p;
            p = SkipWhiteSpace(p, encoding);
            if (p == nullptr || *p == '\0') return {nullptr, false};
            if (*p != '<') {
                TiXmlText text("");
                p = text.Parse(IsWhiteSpaceCondensed() ? p : withWhiteSpace, nullptr, encoding);
                continue;
            }
            if (StringEqual(p, "</", false, encoding)) {
                p = ReadEndTag(p, open.back(), encoding);
                if (p == nullptr) return {nullptr, false};
                open.pop_back();
                continue;
            }
            if (open.size() >= static_cast<size_t>(kMaxParseDepth)) return {nullptr, true};
            const NodeKind kind = Identify(p, encoding);
            if (kind == NodeKind::kElement) break;
            p = SkipLeaf(kind, p, encoding);
        }
    }
}

XmlDocument::DepthScanner::StartTag XmlDocument::DepthScanner::ReadStartTag(const char* p,
                                                                           TiXmlEncoding encoding) {
    StartTag tag;
    p = SkipWhiteSpace(p, encoding);
    if (p == nullptr || *p != '<') return tag;
    p = ReadName(SkipWhiteSpace(p + 1, encoding), &tag.name, encoding);
    if (p == nullptr || *p == '\0') return tag;
    std::set<std::string> attributeNames;  // TinyXML rejects a repeated attribute
    for (;;) {
        p = SkipWhiteSpace(p, encoding);
        if (p == nullptr || *p == '\0') return tag;
        if (*p == '/') {
            if (p[1] == '>') tag.next = p + 2;
            return tag;
        }
        if (*p == '>') {
            tag.next = p + 1;
            tag.hasContent = true;
            return tag;
        }
        TiXmlAttribute attribute;
        p = attribute.Parse(p, nullptr, encoding);
        if (p == nullptr || *p == '\0') return tag;
        if (!attributeNames.insert(attribute.NameTStr()).second) return tag;
    }
}

const char* XmlDocument::DepthScanner::ReadEndTag(const char* p, const std::string& name,
                                                  TiXmlEncoding encoding) {
    const std::string endTag = "</" + name;
    // A prefix match, as in TinyXML: "</ab" passes for "</a" and then fails
    // on the '>' test.
    if (!StringEqual(p, endTag.c_str(), false, encoding)) return nullptr;
    p = SkipWhiteSpace(p + endTag.size(), encoding);
    return p != nullptr && *p == '>' ? p + 1 : nullptr;
}

bool XmlDocument::DepthScanner::StartsWithUtf8Mark(const char* p) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(p);
    return bytes[0] == 0xEF && bytes[1] == 0xBB && bytes[2] == 0xBF;
}

TiXmlEncoding XmlDocument::DepthScanner::DeclaredEncoding(const TiXmlDeclaration& declaration) {
    const char* name = declaration.Encoding();
    if (*name == '\0' || StringEqual(name, "UTF-8", true, TIXML_ENCODING_UNKNOWN) ||
        StringEqual(name, "UTF8", true, TIXML_ENCODING_UNKNOWN))
        return TIXML_ENCODING_UTF8;
    return TIXML_ENCODING_LEGACY;
}

bool XmlDocument::ParseText(const char* text, size_t length) {
    std::string buffer = text == nullptr ? std::string() : std::string(text, length);
    buffer.append(kNulPadding, '\0');
    return ParseGuarded(buffer);
}

bool XmlDocument::LoadPath(const std::string& path) {
    Clear();
    ClearError();
    ClearModuleError();
    SetValue(path);
    FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) {
        SetError(TIXML_ERROR_OPENING_FILE, nullptr, nullptr, TIXML_ENCODING_UNKNOWN);
        return false;
    }
    std::fseek(file, 0, SEEK_END);
    const long length = std::ftell(file);
    std::fseek(file, 0, SEEK_SET);
    std::string buffer(length > 0 ? static_cast<size_t>(length) + kNulPadding : 0, '\0');
    const bool read = length > 0 && std::fread(&buffer[0], static_cast<size_t>(length), 1, file) == 1;
    std::fclose(file);
    if (!read) {
        SetError(length > 0 ? TIXML_ERROR_OPENING_FILE : TIXML_ERROR_DOCUMENT_EMPTY, nullptr, nullptr,
                 TIXML_ENCODING_UNKNOWN);
        return false;
    }
    NormaliseLineEnds(buffer);
    return ParseGuarded(buffer);
}

bool XmlDocument::ParseGuarded(const std::string& buffer) {
    ClearModuleError();
    if (DepthScanner::TooDeep(buffer.c_str())) {
        ClearError();
        SetModuleError(kErrorTooDeep, kTooDeepDescription);
        return false;
    }
    Parse(buffer.c_str(), nullptr, TIXML_ENCODING_UNKNOWN);
    return !Failed();
}

bool XmlDocument::Failed() const { return moduleErrorId_ != 0 || Error(); }

int XmlDocument::ModuleErrorId() const { return moduleErrorId_ != 0 ? moduleErrorId_ : ErrorId(); }

std::string XmlDocument::ModuleErrorDesc() const {
    return moduleErrorId_ != 0 ? moduleErrorDesc_ : std::string(ErrorDesc());
}

void XmlDocument::SetModuleError(int id, const std::string& description) {
    moduleErrorId_ = id;
    moduleErrorDesc_ = description;
}

void XmlDocument::ClearModuleError() { SetModuleError(0, std::string()); }

}  // namespace vorna
