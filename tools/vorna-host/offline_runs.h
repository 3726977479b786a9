// The host's runs that answer a question and end without driving cameras:
// --version and --check. Neither reads nor writes the site's lines, and
// neither lets the module near the site's "VORNA.xml".
#pragma once

#include <string>

#include "options.h"

namespace vorna_host {

// Prints the host's version and the module's; the exit status.
int PrintVersions(const std::string& modulePath);

// Checks "VORNA.xml" in the working directory against `options.lines`,
// printing one line per problem; 0 when clean, 1 otherwise.
int CheckConfiguration(const HostOptions& options, const std::string& modulePath);

}  // namespace vorna_host
