// What a message of the module does on its line, read back from its bytes by
// the frame decoder: which camera it is for and whether it sets the camera's
// motion. A message is judged whole, whatever number of frames it carries.
#pragma once

#include <string>
#include <vector>

#include "line_scheduler.h"
#include "protocols/frame_decoder.h"

namespace vorna_host {

// A message sets motion only when every frame in it does, and then as its
// last frame leaves the camera (moving or still); a message that addresses
// more than one camera, or that does not read as frames, names no camera.
MessageClass ClassifyFrames(const std::vector<vorna::DecodedFrame>& frames);

// The classifier for messages of the protocol named `protocol`.
MessageClassifier ClassifierFor(const std::string& protocol);

}  // namespace vorna_host
