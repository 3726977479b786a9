#include "monitor_print.h"

#include "frame_log.h"
#include "printed_line.h"

namespace vorna_host {

namespace {

std::string Frames(long long count) { return std::to_string(count) + (count == 1 ? " frame" : " frames"); }

std::string Address(int address, int keyboard) {
    if (address < 0) return keyboard < 0 ? "no address" : "keyboard " + std::to_string(keyboard);
    if (keyboard < 0) return "address " + std::to_string(address);
    return "camera " + std::to_string(address) + " keyboard " + std::to_string(keyboard);
}

}  // namespace

std::string FrameAddress(const vorna::DecodedFrame& frame) { return Address(frame.address, frame.keyboard); }

std::string FormatMonitorFrame(long long milliseconds, const vorna::DecodedFrame& frame) {
    std::string line = TimeColumn(milliseconds) +
                       HexBytes(reinterpret_cast<const uint8_t*>(frame.bytes.data()), frame.bytes.size()) + "  " + frame.protocol + "  ";
    if (frame.kind == vorna::FrameKind::kUnknown) return line + "bad frame: " + frame.error + "\n";
    return line + FrameAddress(frame) + "  " + frame.meaning + "\n";
}

std::string MessageMeaning(const std::vector<vorna::DecodedFrame>& frames) {
    bool oneAddress = true;
    for (const vorna::DecodedFrame& frame : frames) {
        oneAddress = oneAddress && frame.address == frames.front().address && frame.keyboard == frames.front().keyboard;
    }
    std::string meaning;
    for (const vorna::DecodedFrame& frame : frames) {
        if (!meaning.empty()) meaning += "; ";
        const bool bad = frame.kind == vorna::FrameKind::kUnknown;
        if (!bad && (!oneAddress || meaning.empty())) meaning += FrameAddress(frame) + ": ";
        meaning += bad ? "bad frame: " + frame.error : frame.meaning;
    }
    return meaning;
}

void AddressTable::Count(const vorna::DecodedFrame& frame) {
    if (frame.kind == vorna::FrameKind::kUnknown) {
        ++badFrames_;
        return;
    }
    ++frames_[{frame.address, frame.keyboard}];
}

std::string AddressTable::Format() const {
    std::string table = "addresses seen:\n";
    if (frames_.empty()) table += "  none\n";
    for (const auto& seen : frames_) {
        table += "  " + Address(seen.first.first, seen.first.second) + ": " + Frames(seen.second) + "\n";
    }
    if (badFrames_ > 0) table += "  bad frames: " + std::to_string(badFrames_) + "\n";
    return table;
}

}  // namespace vorna_host
