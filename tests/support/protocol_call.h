// Calls a CProtocol operation by its name, as the frames files write it.
#pragma once

#include <string>
#include <vector>

#include "protocols/protocol.h"
#include "support/frames_file.h"

namespace vorna_test {

// The bytes the operation builds; throws std::runtime_error for an unknown
// operation or a wrong number or kind of arguments (address included).
vorna::Bytes CallOperation(vorna::CProtocol& protocol, const std::string& operation,
                           const std::vector<FrameArg>& args);

}  // namespace vorna_test
