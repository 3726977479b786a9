// What the bus monitor prints: one line per frame, and the table of the
// addresses it has seen.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "protocols/frame_decoder.h"

namespace vorna_host {

// "    250 ms  FF 01 00 04 1F 00 24  Pelco-D  address 1  pan left 32, tilt
// still, zoom still", or "... bad frame: bad checksum 0x02, expected 0x01".
std::string FormatMonitorFrame(long long milliseconds, const vorna::DecodedFrame& frame);

// "address 1", "camera 5 keyboard 2", "no address".
std::string FrameAddress(const vorna::DecodedFrame& frame);

// What the frames of one message do: "address 1: auto iris on; auto iris on
// (second frame)", the address once when they share it.
std::string MessageMeaning(const std::vector<vorna::DecodedFrame>& frames);

// Frames counted per address (and AD keyboard), bad frames apart.
class AddressTable {
public:
    void Count(const vorna::DecodedFrame& frame);
    // "addresses seen:\n  address 1: 12 frames\n  bad frames: 1\n"
    std::string Format() const;

private:
    std::map<std::pair<int, int>, long long> frames_;
    long long badFrames_ = 0;
};

}  // namespace vorna_host
