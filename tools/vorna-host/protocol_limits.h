// What each camera protocol's frames can carry, so that the console refuses a
// number the frames would wrap, cut or turn around, and warns before a
// command whose effect on that protocol is not what its name says.
#pragma once

#include <string>
#include <vector>

#include "camera_table.h"
#include "documents.h"

namespace vorna_host {

// Why `calls` cannot go to a camera of `protocol` with the published
// `limits` (the allowed range named), or empty when they can. Without a
// protocol only the opcodes are checked.
std::string CheckCalls(const std::vector<OpcodeCall>& calls, const std::string& protocol,
                       const ProtocolLimits& limits);

// Why `address` is outside what `protocol` can reach, or empty.
std::string CheckAddress(int address, const std::string& protocol, const ProtocolLimits& limits);

// What `calls` really do on `protocol` when that is not what they say, to be
// confirmed before they go; empty when nothing surprises.
std::string SurprisingEffect(const std::vector<OpcodeCall>& calls, const std::string& protocol);

// True when the calls only change settings that the module keeps for later
// frames (speeds), so that no frame is expected.
bool OnlySettings(const std::vector<OpcodeCall>& calls);

// The highest speed setting per axis that the protocol's frames take; -1 for
// every axis of an unknown protocol.
struct SpeedRange {
    int pan = -1, tilt = -1, zoom = -1;
};
SpeedRange SpeedRangeOf(const std::string& protocol);

// The baud rate cameras of `protocol` usually leave the factory with.
int UsualBaud(const std::string& protocol);

}  // namespace vorna_host
