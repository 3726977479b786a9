// vorna-host with its control panel on a free loopback port, as the panel's
// tests start it.
#pragma once

#include <regex>
#include <string>

#include "tools/host_process.h"

namespace vorna_test {

// The port of the address the host printed ("control panel at
// http://127.0.0.1:PORT/..."), or -1 when none came within a few seconds.
inline int WaitForPanelPort(HostProcess& host) {
    const std::regex printed(R"(control panel at http://127\.0\.0\.1:(\d+)/[^\n]*\n)");
    std::smatch found;
    if (!host.WaitUntil([&] { return std::regex_search(host.err, found, printed); }, 5000)) return -1;
    return std::stoi(found[1]);
}

}  // namespace vorna_test
