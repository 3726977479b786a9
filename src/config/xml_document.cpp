#include "config/xml_document.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <vector>

namespace vorna {

namespace {

const char* const kTooDeepDescription =
    "Elements nested too deeply (exceeds the configured maximum parse depth).";

// TinyXML classifies bytes with the C library's isspace, isalpha and isalnum
// and takes every byte from 127 up as a letter. The C library's ASCII classes
// are the same in every locale, so the guard looks them up here instead of
// calling the library for every byte; a byte above ASCII still asks the
// locale whether it is a space.
enum AsciiClass : unsigned char { kSpace = 1, kLetter = 2, kDigit = 4 };
constexpr unsigned char kFirstNameByteAboveAscii = 127;
constexpr std::array<unsigned char, 128> kAsciiClasses = [] {
    std::array<unsigned char, 128> classes{};
    for (const char c : {' ', '\t', '\n', '\v', '\f', '\r'}) classes[static_cast<unsigned char>(c)] = kSpace;
    for (int c = 'a'; c <= 'z'; ++c) classes[c] = classes[c - 'a' + 'A'] = kLetter;
    for (int c = '0'; c <= '9'; ++c) classes[c] = kDigit;
    return classes;
}();

// Attribute names of one start tag kept without a heap allocation.
constexpr size_t kInlineAttributeNames = 16;

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
// grows with the depth of the text. Names are kept as spans of the text, and
// attribute values in plain quotes are skipped byte by byte, so that the walk
// costs a small part of the parse it guards; any other value goes through
// TinyXML's own attribute parser.
class XmlDocument::DepthScanner {
public:
    // True when TinyXML, before stopping for any other reason, would parse a
    // child node inside an element at the maximum depth.
    static bool TooDeep(const char* text);

private:
    enum class NodeKind { kNone, kDeclaration, kComment, kCData, kUnknown, kElement };

    // A name as it stands in the text.
    struct Span {
        const char* begin;
        size_t size;
        bool operator==(const Span& other) const {
            return size == other.size && std::memcmp(begin, other.begin, size) == 0;
        }
    };

    // A parsed start tag: `next` is null when TinyXML fails on it.
    struct StartTag {
        const char* next = nullptr;
        bool hasContent = false;
        Span name{nullptr, 0};
    };

    explicit DepthScanner(TiXmlEncoding encoding) : encoding_(encoding) {}

    NodeKind Identify(const char* p) const;
    const char* SkipLeaf(NodeKind kind, const char* p) const;
    // Where the walk of one top-level element ends (null when TinyXML stops
    // inside it); sets tooDeep_ when it reaches past the limit.
    const char* SkipElement(const char* p);
    StartTag ReadStartTag(const char* p);
    const char* ReadAttribute(const char* p, Span* name);
    // False when `name` repeats one of the `count` names before it in the tag.
    bool AddAttributeName(const Span& name, size_t count);
    const char* SkipQuotedValue(const char* p, char quote) const;
    const char* ReadName(const char* p) const;
    const char* SkipSpace(const char* p) const;
    static bool IsSpace(unsigned char byte);
    static bool IsNameStart(unsigned char byte);
    static bool IsNameChar(unsigned char byte);
    const char* ReadEndTag(const char* p, const Span& name) const;
    static bool StartsWithUtf8Mark(const char* p);
    static TiXmlEncoding DeclaredEncoding(const TiXmlDeclaration& declaration);

    TiXmlEncoding encoding_;
    bool tooDeep_ = false;
    // Elements whose content is being read, outermost first.
    std::array<Span, kMaxParseDepth> open_;
    size_t openCount_ = 0;
    // Attribute names of the start tag being read (TinyXML rejects a repeat);
    // the first ones without a heap allocation.
    std::array<Span, kInlineAttributeNames> names_;
    std::vector<Span> moreNames_;
    // For values that are not plain quoted text.
    std::optional<TiXmlAttribute> attribute_;
};

bool XmlDocument::DepthScanner::TooDeep(const char* p) {
    if (p == nullptr || *p == '\0') return false;
    DepthScanner scanner(StartsWithUtf8Mark(p) ? TIXML_ENCODING_UTF8 : TIXML_ENCODING_UNKNOWN);
    p = scanner.SkipSpace(p);
    while (p != nullptr && *p != '\0') {
        const NodeKind kind = scanner.Identify(p);
        if (kind == NodeKind::kNone) break;
        if (kind == NodeKind::kElement) {
            p = scanner.SkipElement(p);
            if (scanner.tooDeep_) return true;
        } else if (kind == NodeKind::kDeclaration && scanner.encoding_ == TIXML_ENCODING_UNKNOWN) {
            // The first top-level declaration fixes the encoding of what follows.
            TiXmlDeclaration declaration;
            p = declaration.Parse(p, nullptr, scanner.encoding_);
            scanner.encoding_ = DeclaredEncoding(declaration);
        } else {
            p = scanner.SkipLeaf(kind, p);
        }
        p = scanner.SkipSpace(p);
    }
    return false;
}

XmlDocument::DepthScanner::NodeKind XmlDocument::DepthScanner::Identify(const char* p) const {
    p = SkipSpace(p);
    if (p == nullptr || *p != '<') return NodeKind::kNone;
    if (IsNameStart(static_cast<unsigned char>(p[1]))) {
        // "<?xml" and "<!" cannot start that way.
        return NodeKind::kElement;
    }
    if (StringEqual(p, "<?xml", true, encoding_)) return NodeKind::kDeclaration;
    if (StringEqual(p, "<!--", false, encoding_)) return NodeKind::kComment;
    if (StringEqual(p, "<![CDATA[", false, encoding_)) return NodeKind::kCData;
    return NodeKind::kUnknown;
}

const char* XmlDocument::DepthScanner::SkipLeaf(NodeKind kind, const char* p) const {
    switch (kind) {
        case NodeKind::kDeclaration: {
            TiXmlDeclaration declaration;
            return declaration.Parse(p, nullptr, encoding_);
        }
        case NodeKind::kComment: {
            TiXmlComment comment;
            return comment.Parse(p, nullptr, encoding_);
        }
        case NodeKind::kCData: {
            TiXmlText cdata("");
            cdata.SetCDATA(true);
            return cdata.Parse(p, nullptr, encoding_);
        }
        default: {
            TiXmlUnknown unknown;
            return unknown.Parse(p, nullptr, encoding_);
        }
    }
}

const char* XmlDocument::DepthScanner::SkipElement(const char* p) {
    openCount_ = 0;
    for (;;) {
        const StartTag tag = ReadStartTag(p);
        if (tag.next == nullptr) return nullptr;
        p = tag.next;
        if (tag.hasContent) open_[openCount_++] = tag.name;
        // The content of the innermost open element, up to its next child
        // element or past the end of the outermost one.
        for (;;) {
            if (openCount_ == 0) return p;
            const char* withWhiteSpace = p;
            p = SkipSpace(p);
            if (p == nullptr || *p == '\0') return nullptr;
            if (*p != '<') {
                TiXmlText text("");
                p = text.Parse(IsWhiteSpaceCondensed() ? p : withWhiteSpace, nullptr, encoding_);
                continue;
            }
            if (p[1] == '/') {
                p = ReadEndTag(p, open_[openCount_ - 1]);
                if (p == nullptr) return nullptr;
                --openCount_;
                continue;
            }
            if (openCount_ >= open_.size()) {
                tooDeep_ = true;
                return nullptr;
            }
            const NodeKind kind = Identify(p);
            if (kind == NodeKind::kElement) break;
            p = SkipLeaf(kind, p);
        }
    }
}

XmlDocument::DepthScanner::StartTag XmlDocument::DepthScanner::ReadStartTag(const char* p) {
    StartTag tag;
    p = SkipSpace(p);
    if (p == nullptr || *p != '<') return tag;
    const char* name = SkipSpace(p + 1);
    p = ReadName(name);
    if (p == nullptr || *p == '\0') return tag;
    tag.name = Span{name, static_cast<size_t>(p - name)};
    size_t attributes = 0;
    for (;;) {
        p = SkipSpace(p);
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
        Span attributeName{nullptr, 0};
        p = ReadAttribute(p, &attributeName);
        if (p == nullptr || *p == '\0') return tag;
        if (!AddAttributeName(attributeName, attributes++)) return tag;
    }
}

// As TinyXML's attribute parser: name, '=', then a value in quotes or, as a
// courtesy, without. Null when TinyXML fails on it.
const char* XmlDocument::DepthScanner::ReadAttribute(const char* p, Span* name) {
    const char* start = SkipSpace(p);
    if (start == nullptr || *start == '\0') return nullptr;
    const char* end = ReadName(start);
    if (end == nullptr || *end == '\0') return nullptr;
    *name = Span{start, static_cast<size_t>(end - start)};
    const char* equals = SkipSpace(end);
    if (equals != nullptr && *equals == '=') {
        const char* value = SkipSpace(equals + 1);
        if (value != nullptr && (*value == '"' || *value == '\'')) {
            const char* next = SkipQuotedValue(value + 1, *value);
            if (next != nullptr) return next;
        }
    }
    if (!attribute_) attribute_.emplace();
    return attribute_->Parse(start, nullptr, encoding_);
}

bool XmlDocument::DepthScanner::AddAttributeName(const Span& name, size_t count) {
    if (count == 0) moreNames_.clear();
    for (size_t i = 0; i < count; ++i)
        if ((i < names_.size() ? names_[i] : moreNames_[i - names_.size()]) == name) return false;
    if (count < names_.size())
        names_[count] = name;
    else
        moreNames_.push_back(name);
    return true;
}

// Past the closing quote of a value made only of bytes that TinyXML reads
// one at a time (no entity, no UTF-8 sequence), else null.
const char* XmlDocument::DepthScanner::SkipQuotedValue(const char* p, char quote) const {
    for (;; ++p) {
        const auto byte = static_cast<unsigned char>(*p);
        if (byte == static_cast<unsigned char>(quote)) return p + 1;
        if (byte == '\0' || byte == '&' || (byte >= 0x80 && encoding_ == TIXML_ENCODING_UTF8)) return nullptr;
    }
}

// The end of the name at `p` by TinyXML's rules, or null when none starts there.
const char* XmlDocument::DepthScanner::ReadName(const char* p) const {
    if (p == nullptr || !IsNameStart(static_cast<unsigned char>(*p))) return nullptr;
    while (IsNameChar(static_cast<unsigned char>(*p))) ++p;
    return p;
}

// TinyXML's white-space skip: also steps over the byte-order mark and the
// two UTF-8 non-characters U+FFFE and U+FFFF in UTF-8 text. Null at the end
// of the text.
inline const char* XmlDocument::DepthScanner::SkipSpace(const char* p) const {
    if (p == nullptr || *p == '\0') return nullptr;
    // Most calls stand on markup already.
    if (*p == '<') return p;
    for (;;) {
        const auto* bytes = reinterpret_cast<const unsigned char*>(p);
        if (encoding_ == TIXML_ENCODING_UTF8 && bytes[0] == 0xEF &&
            (bytes[1] == 0xBB ? bytes[2] == 0xBF : bytes[1] == 0xBF && (bytes[2] == 0xBE || bytes[2] == 0xBF))) {
            p += 3;
            continue;
        }
        if (bytes[0] == '\0' || !IsSpace(bytes[0])) return p;
        ++p;
    }
}

bool XmlDocument::DepthScanner::IsSpace(unsigned char byte) {
    return byte < kAsciiClasses.size() ? (kAsciiClasses[byte] & kSpace) != 0 : std::isspace(byte) != 0;
}

bool XmlDocument::DepthScanner::IsNameStart(unsigned char byte) {
    return byte >= kFirstNameByteAboveAscii || (kAsciiClasses[byte] & kLetter) != 0 || byte == '_';
}

bool XmlDocument::DepthScanner::IsNameChar(unsigned char byte) {
    return byte >= kFirstNameByteAboveAscii || (kAsciiClasses[byte] & (kLetter | kDigit)) != 0 || byte == '_' ||
           byte == '-' || byte == '.' || byte == ':';
}

const char* XmlDocument::DepthScanner::ReadEndTag(const char* p, const Span& name) const {
    // A prefix match, as in TinyXML: "</ab" passes for "</a" and then fails
    // on the '>' test.
    p += 2;
    for (size_t i = 0; i < name.size; ++i, ++p)
        if (*p != name.begin[i]) return nullptr;
    p = SkipSpace(p);
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
    if (text != nullptr && CanParseInPlace(text, length)) return ParseGuarded(text, length);
    std::string buffer;
    buffer.reserve(length + kNulPadding);
    if (text != nullptr) buffer.assign(text, length);
    buffer.append(kNulPadding, '\0');
    return ParseGuarded(buffer.c_str(), buffer.size());
}

bool XmlDocument::CanParseInPlace(const char* text, size_t length) {
    const auto* end = static_cast<const char*>(std::memchr(text, '\0', length));
    if (end == nullptr) return false;
    for (const char* p = end - std::min<size_t>(3, static_cast<size_t>(end - text)); p < end; ++p)
        if (utf8ByteTable[static_cast<unsigned char>(*p)] > end - p) return false;
    return true;
}

bool XmlDocument::LoadPath(const std::string& path) {
    Clear();
    ClearError();
    ClearModuleError();
    SetValue(path);
    FILE* file = std::fopen(path.c_str(), "rb");
    // A directory where the file should be opens too, but tells a length no
    // buffer can hold: only a regular file is read.
    struct stat info;
    if (file != nullptr && (fstat(fileno(file), &info) != 0 || !S_ISREG(info.st_mode))) {
        std::fclose(file);
        file = nullptr;
    }
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
    return ParseGuarded(buffer.c_str(), buffer.size());
}

bool XmlDocument::ParseGuarded(const char* text, size_t length) {
    ClearModuleError();
    // Every element TinyXML opens starts at a '<' of its own, so a text with
    // no more of them than the limit cannot nest too deep: most events.
    if (std::count(text, text + length, '<') > kMaxParseDepth && DepthScanner::TooDeep(text)) {
        ClearError();
        SetModuleError(kErrorTooDeep, kTooDeepDescription);
        return false;
    }
    Parse(text, nullptr, TIXML_ENCODING_UNKNOWN);
    return !Failed();
}

bool ReadInt(const TiXmlElement& element, const char* name, int* value) {
    // TinyXML's integer query is sscanf "%d": white space, a sign, decimal
    // digits, the number as strtol reads it, cut to an int. strtol does just
    // that without a formatted scan, which counts at several integers per
    // event and per preset.
    const char* text = element.Attribute(name);
    if (text == nullptr) return false;
    char* end;
    const long number = std::strtol(text, &end, 10);
    if (end == text) return false;
    *value = static_cast<int>(number);
    return true;
}

bool ReadDouble(const TiXmlElement& element, const char* name, double* value) {
    // Plain decimal text ("2", "-0.5") reads the same with strtod as with
    // TinyXML's sscanf "%lf"; anything else (an exponent, white space, hex,
    // "inf") is left to TinyXML, whose scan rejects some text strtod accepts.
    const char* text = element.Attribute(name);
    if (text == nullptr) return false;
    if (text[std::strspn(text, "0123456789+-.")] == '\0') {
        char* end;
        const double number = std::strtod(text, &end);
        if (end != text && *end == '\0') {
            *value = number;
            return true;
        }
    }
    return element.QueryDoubleAttribute(name, value) == TIXML_SUCCESS;
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

void XmlDocument::ClearModuleError() {
    moduleErrorId_ = 0;
    moduleErrorDesc_.clear();
}

}  // namespace vorna
