// One serial line as the host owns it: the module hands over a camera's
// command bytes, the line puts them on the wire (or on the screen).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace vorna_host {

class SerialLine {
public:
    virtual ~SerialLine() = default;
    // Sends one whole frame; false when it could not be sent, with the reason
    // in `error`.
    virtual bool Send(const uint8_t* bytes, size_t length, std::string& error) = 0;
};

}  // namespace vorna_host
