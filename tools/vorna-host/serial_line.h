// One serial line as the host owns it: the module hands over a camera's
// command bytes, the line puts them on the wire (or on the screen).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace vorna_host {

class SerialLine {
public:
    // When the line's writer hands it a frame: a device takes it as its first
    // byte may go out and its driver drains it at the baud rate; a line that
    // only shows frames takes it when its last byte would leave the wire.
    enum class Handover { kFirstByte, kLastByte };

    virtual ~SerialLine() = default;
    // Sends one whole frame; false when it could not be sent, with the reason
    // in `error` (empty when the line reported the reason itself).
    virtual bool Send(const uint8_t* bytes, size_t length, std::string& error) = 0;
    // Bytes handed to the driver that have not left yet.
    virtual size_t Unsent() { return 0; }
    virtual Handover HandedAt() const { return Handover::kFirstByte; }
};

}  // namespace vorna_host
