// The one road from a PTZ opcode to a camera's serial line.
#pragma once

#include "core/ptz_camera.h"
#include "vorna/ptz.h"

namespace vorna {

// What the periodic step issues to resend a camera's kept bytes: like every
// opcode without a command of its own, it goes through PassThrough.
constexpr int kOpRepeat = -1;

// Updates the camera's motion state, builds the command bytes with the
// camera's protocol, keeps them for repetition when the protocol asks for it,
// and sends them to the camera's stream. Called with the controller's lock held.
void ExecuteCommand(PtzCamera& camera, int opcode, double parm);

}  // namespace vorna
