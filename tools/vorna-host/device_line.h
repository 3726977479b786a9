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
// Sets an open tty to raw 8N1 at `speed`, reads returning at once.
bool ConfigureRaw8N1(int fd, speed_t speed);

class DeviceLine : public SerialLine {
public:
    // Opens and configures `path` for this host alone; null with the reason in
    // `error` when the device cannot be opened, is not a serial device or is
    // held by another program.
    static std::unique_ptr<DeviceLine> Open(const std::string& path, int baud, std::string& error);
    ~DeviceLine() override;

    bool Send(const uint8_t* bytes, size_t length, std::string& error) override;
    // What the driver reports still queued for output (TIOCOUTQ).
    size_t Unsent() override;
    // True once a send found the device gone (an adapter unplugged).
    bool Gone() const { return gone_; }

private:
    explicit DeviceLine(int fd) : fd_(fd) {}
    int fd_;
    bool gone_ = false;
};

}  // namespace vorna_host
