#include "reopening_line.h"

#include "echoed_line.h"
#include "known_protocols.h"

namespace vorna_host {

bool ReopeningLine::Send(const uint8_t* bytes, size_t length, std::string& error) {
    if (!device_) {
        std::string why;
        device_ = DeviceLine::Open(path_, baud_, why);
        if (!device_) {
            error.clear();
            return false;
        }
        report_(path_ + " is back");
    }
    if (device_->Send(bytes, length, error)) return true;
    if (device_->Gone()) {
        device_.reset();
        report_(path_ + " is gone (" + error + "); frames are dropped until it returns");
        error.clear();
    }
    return false;
}

std::unique_ptr<SerialLine> OpenRealLine(const LineOption& option, bool echo,
                                         std::chrono::steady_clock::time_point start,
                                         const ReopeningLine::Reporter& report, std::string& error) {
    std::unique_ptr<DeviceLine> device = DeviceLine::Open(option.device, option.baud, error);
    if (!device) return nullptr;
    report("line " + option.name + ": " + option.device + ", " + option.protocol + ", " +
           std::to_string(option.baud) + " baud");
    std::unique_ptr<SerialLine> line(new ReopeningLine(
        std::move(device), option.device, option.baud,
        [report, name = option.name](const std::string& text) { report("line " + name + ": " + text); }));
    if (!echo) return line;
    PrintedLine printed(option, start, stdout);
    return std::unique_ptr<SerialLine>(new EchoedLine(std::move(line), std::move(printed)));
}

}  // namespace vorna_host
