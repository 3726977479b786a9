// What the module says about itself when opened: its name and version and
// the limits it publishes per protocol. Learnt by opening it once in a
// scratch directory, so that no site's "VORNA.xml" is read or written.
#pragma once

#include <map>
#include <string>

#include "camera_table.h"

namespace vorna_host {

struct ModuleFacts {
    std::string name;     // from the announcement, e.g. "VORNA"
    std::string version;  // e.g. "26.1.7.3"
    std::map<std::string, ProtocolLimits> protocols;
};

// False with the reason in `error` when the module cannot be loaded or the
// scratch directory cannot be made.
bool ProbeModule(const std::string& modulePath, ModuleFacts& facts, std::string& error);

}  // namespace vorna_host
