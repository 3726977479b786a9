// vorna-host with its control panel on a free loopback port, as the panel's
// tests start it.
#pragma once

#include <cstdlib>
#include <string>

#include "tools/host_process.h"

namespace vorna_test {

// The port of the address the host printed ("control panel at
// http://127.0.0.1:PORT/..."), or -1 when none came within a few seconds.
inline int WaitForPanelPort(HostProcess& host) {
    const std::string printed = "control panel at http://127.0.0.1:";
    if (!host.WaitUntil([&] { return host.err.find('\n', host.err.find(printed)) != std::string::npos; }, 5000))
        return -1;
    return std::atoi(host.err.c_str() + host.err.find(printed) + printed.size());
}

}  // namespace vorna_test
