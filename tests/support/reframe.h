// A serial line at the wrong baud rate, simulated: bytes sent as 8N1 at one
// rate are sampled by a receiver at another, as a UART does it.
#pragma once

#include <string>

namespace vorna_test {

// The bytes a receiver at `sampledBaud` reads from `bytes` sent back to back
// at `sentBaud`; a byte whose stop bit reads low arrives as 0, as a tty
// without parity marking delivers it.
std::string Reframe(const std::string& bytes, int sentBaud, int sampledBaud);

}  // namespace vorna_test
