// A pseudo-terminal pair: the host opens the slave path as its serial line,
// the test reads and writes the master.
#pragma once

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <stdexcept>
#include <string>

#include "support/recording_host.h"
#include "tools/host_process.h"

namespace vorna_test {

class PseudoTerminal {
public:
    // Neither end is inherited by a host: it opens the line by its path.
    PseudoTerminal() {
        master = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
        if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0) throw std::runtime_error("posix_openpt");
        slavePath = ptsname(master);
        // Held open so that the line keeps its settings after the host exits.
        slave = open(slavePath.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    }
    ~PseudoTerminal() {
        close(slave);
        close(master);
    }

    // In hex, what the host wrote since the last read, once that holds
    // `frame` (or the test's patience ran out).
    std::string HexUntil(const std::string& frame) {
        std::string bytes;
        Eventually([&] {
            bytes += Rest();
            return Hex(bytes).find(frame) != std::string::npos;
        });
        return Hex(bytes);
    }

    // Everything the host wrote that was not read yet.
    std::string Rest() {
        std::string bytes;
        char chunk[256];
        for (ssize_t count; (count = read(master, chunk, sizeof chunk)) > 0;)
            bytes.append(chunk, static_cast<size_t>(count));
        return bytes;
    }

    int master = -1;
    int slave = -1;
    std::string slavePath;
};

}  // namespace vorna_test
