// The module's XML document, for events and configuration alike: TinyXML's
// document behind a parse-depth guard, with an error state of the module's own
// on top of TinyXML's, where the safe save also reports a failed save.
#pragma once

#include <tinyxml.h>

#include <cstddef>
#include <string>

namespace vorna {

// Elements may nest this deep (the root element is at depth 1).
constexpr int kMaxParseDepth = 100;
// "Elements nested too deeply (exceeds the configured maximum parse depth)."
constexpr int kErrorTooDeep = 17;
// A file save that failed; the description says which step.
constexpr int kErrorSaveFailed = 2;

class XmlDocument : public TiXmlDocument {
public:
    // Parses `length` bytes (TinyXML stops at a NUL as usual), encoding
    // unknown, behind the depth guard. True when the document parsed without
    // error. The bytes are copied only when they hold no NUL that ends them
    // safely.
    bool ParseText(const char* text, size_t length);

    // Loads a file the way TinyXML's file load does (binary read, line ends
    // normalised, default encoding), behind the depth guard.
    bool LoadPath(const std::string& path);

    // The module's own error or TinyXML's.
    bool Failed() const;
    // The module's own id if set, else TinyXML's ErrorId().
    int ModuleErrorId() const;
    // Likewise for the description.
    std::string ModuleErrorDesc() const;
    // Records an error of the module's own; TinyXML's error flag stays as it is.
    void SetModuleError(int id, const std::string& description);

private:
    // Walks text the way TinyXML's parser does, without recursion; nested so
    // that it reaches TinyXML's own scanning helpers.
    class DepthScanner;

    // True when TinyXML, reading `text` up to its first NUL, cannot step past
    // that NUL (a UTF-8 lead byte makes it step over as many bytes as its
    // sequence should have), so that the text needs no padded copy.
    static bool CanParseInPlace(const char* text, size_t length);

    // Parses `text` unless the guard finds it too deep; TinyXML reads none
    // of it beyond `length` bytes.
    bool ParseGuarded(const char* text, size_t length);
    void ClearModuleError();

    int moduleErrorId_ = 0;
    std::string moduleErrorDesc_;
};

// Reads an integer attribute by TinyXML's rules (decimal, "%d"); false when
// it is missing or not a number, and then `value` is left as it was.
bool ReadInt(const TiXmlElement& element, const char* name, int* value);

// Likewise for a floating-point attribute ("%lf").
bool ReadDouble(const TiXmlElement& element, const char* name, double* value);

// Visits the child elements called `name`, in document order.
template <typename Visit>
void ForEachChild(const TiXmlElement& parent, const char* name, Visit visit) {
    for (const TiXmlElement* child = parent.FirstChildElement(name); child != nullptr;
         child = child->NextSiblingElement(name))
        visit(*child);
}

}  // namespace vorna
