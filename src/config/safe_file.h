// Loading and saving XML files so that a crash or power loss in the middle of
// a save never leaves a torn file: the document goes to a side file (the name
// followed by ".pending"), is forced to disk and renamed over the real one;
// a load prefers a side file that a crash left complete. A name that is a
// symbolic link is followed to the file it finally names, and the side file
// lives beside that file, so a save keeps the link a link.
#pragma once

#include <string>

#include "config/xml_document.h"

namespace vorna {

// Loads the side file if it parses (and renames it over `fileName`), else
// `fileName` itself. True when a file was loaded and parsed.
bool LoadDocument(XmlDocument& document, const std::string& fileName);

// Writes `document` (four-space indentation, a line break after each element)
// through the side file, releasing its nodes as it prints them (only the
// error state is left); the new file keeps the permission bits of the one
// it replaces. On failure returns false with the reason as the
// document's module error (id 2); TinyXML's own error flag stays as it was.
bool SaveDocument(XmlDocument& document, const std::string& fileName);

}  // namespace vorna
