// A real serial line: a tty device opened raw, 8 data bits, no parity, one
// stop bit, at a fixed baud rate, without becoming the host's controlling
// terminal.
#pragma once

#include <termios.h>

#include <memory>
#include <string>

#include "serial_line.h"

namespace vorna_host {

// The termios constant for `baud`; false for a rate the host does not offer.
bool LookUpBaud(int baud, speed_t& speed);
// "1200, 2400, ..." for error messages and help.
std::string SupportedBauds();

class DeviceLine : public SerialLine {
public:
    // Opens and configures `path`; null with the reason in `error` when the
    // device cannot be opened or is not a serial device.
    static std::unique_ptr<DeviceLine> Open(const std::string& path, int baud, std::string& error);
    ~DeviceLine() override;

    bool Send(const uint8_t* bytes, size_t length, std::string& error) override;
    // What the driver reports still queued for output (TIOCOUTQ).
    size_t Unsent() override;

private:
    explicit DeviceLine(int fd) : fd_(fd) {}
    int fd_;
};

}  // namespace vorna_host
