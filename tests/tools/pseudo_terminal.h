// A pseudo-terminal pair: the host opens the slave path as its serial line,
// the test reads and writes the master.
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <unistd.h>

#include <stdexcept>
#include <string>

namespace vorna_test {

class PseudoTerminal {
public:
    PseudoTerminal() {
        master = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
        if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0) throw std::runtime_error("posix_openpt");
        slavePath = ptsname(master);
        // Held open so that the line keeps its settings after the host exits.
        slave = open(slavePath.c_str(), O_RDWR | O_NOCTTY);
    }
    ~PseudoTerminal() {
        close(slave);
        close(master);
    }

    // Everything the host wrote, once `expected` bytes arrived or a second
    // passed.
    std::string Received(size_t expected) {
        std::string bytes;
        for (int attempt = 0; attempt < 100 && bytes.size() < expected; ++attempt) {
            pollfd entry{master, POLLIN, 0};
            if (poll(&entry, 1, 10) <= 0) continue;
            char chunk[256];
            const ssize_t count = read(master, chunk, sizeof chunk);
            if (count > 0) bytes.append(chunk, static_cast<size_t>(count));
        }
        return bytes;
    }

    // Everything the host wrote that was not read yet, once it has ended.
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
