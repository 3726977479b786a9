// A device line whose frames are also printed as a virtual line prints them
// (--echo), so that an installer sees what went to the camera.
#pragma once

#include <memory>

#include "printed_line.h"

namespace vorna_host {

class EchoedLine : public SerialLine {
public:
    EchoedLine(std::unique_ptr<SerialLine> device, PrintedLine echo)
        : device_(std::move(device)), echo_(std::move(echo)) {}

    // Prints a frame once the device took it.
    bool Send(const uint8_t* bytes, size_t length, std::string& error) override {
        return device_->Send(bytes, length, error) && echo_.Send(bytes, length, error);
    }
    size_t Unsent() override { return device_->Unsent(); }
    Handover HandedAt() const override { return device_->HandedAt(); }

private:
    std::unique_ptr<SerialLine> device_;
    PrintedLine echo_;
};

}  // namespace vorna_host
