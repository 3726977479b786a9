// A device line that outlives its device: when the adapter is unplugged the
// host says so once, drops the frames meanwhile, and opens the device again
// as soon as it is back, without a restart.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "device_line.h"
#include "options.h"

namespace vorna_host {

class ReopeningLine : public SerialLine {
public:
    using Reporter = std::function<void(const std::string&)>;

    ReopeningLine(std::unique_ptr<DeviceLine> device, std::string path, int baud, Reporter report)
        : device_(std::move(device)), path_(std::move(path)), baud_(baud), report_(std::move(report)) {}

    // While the device is gone, a frame fails with an empty reason: the loss
    // was reported when it began.
    bool Send(const uint8_t* bytes, size_t length, std::string& error) override;
    size_t Unsent() override { return device_ ? device_->Unsent() : 0; }

private:
    std::unique_ptr<DeviceLine> device_;  // null while the device is gone
    std::string path_;
    int baud_;
    Reporter report_;
};

// Opens the device of `option` as the host runs a real line: held
// exclusively, reopened after an unplug, its frames printed too when `echo`;
// announces it in one line through `report`. Null with the reason in `error`.
std::unique_ptr<SerialLine> OpenRealLine(const LineOption& option, bool echo,
                                         std::chrono::steady_clock::time_point start,
                                         const ReopeningLine::Reporter& report, std::string& error);

}  // namespace vorna_host
