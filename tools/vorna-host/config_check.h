// Reading a site's "VORNA.xml" before the module does: the start refuses a
// file that would not load (the module would set it aside and run with no
// cameras), and --check lists what would go wrong with the given lines.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "camera_table.h"
#include "options.h"

namespace vorna_host {

// Why "VORNA.xml" in the current directory would not load at the module's
// start (TinyXML's text with its row and column), or empty when it loads or
// is not there. A complete side file left by an interrupted save wins, as it
// does in the module.
std::string ConfigFileLoadError();

// One line per problem of "VORNA.xml" in the current directory for a host
// with `lines`, given the limits the module publishes per protocol: a parse
// error, ports without a line, addresses outside the protocol's range,
// preset names beyond its preset count, tour positions naming presets
// without a name. Empty when the file is clean.
std::vector<std::string> CheckConfigFile(const std::vector<LineOption>& lines,
                                         const std::map<std::string, ProtocolLimits>& protocols);

}  // namespace vorna_host
