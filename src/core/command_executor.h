// The one road from a PTZ opcode to a camera's serial line.
#pragma once

#include "core/ptz_camera.h"

namespace vorna {

// Opcodes the executor knows; every other value (negative ones too) resends
// the kept bytes through the protocol's PassThrough.
enum Opcode {
    kOpAutoIris = 9,
    kOpIrisOpen = 10,        // menu select while the menu is open
    kOpIrisClose = 11,
    kOpFocusNear = 12,
    kOpFocusFar = 13,
    kOpAutoFocus = 14,
    kOpZoomIn = 17,
    kOpZoomOut = 18,
    kOpSetZoomSpeed = 30,
    kOpStopZoom = 31,
    kOpStopPan = 32,
    kOpPanLeft = 33,         // menu left while the menu is open
    kOpPanRight = 34,        // menu right
    kOpSetPanSpeed = 39,
    kOpSetTiltSpeed = 46,
    kOpTiltDown = 52,        // menu down
    kOpTiltUp = 53,          // menu up
    kOpStopTilt = 54,
    kOpSetPreset = 58,
    kOpClearPreset = 59,
    kOpGoToPreset = 60,
    kOpStopIris = 62,
    kOpStopFocus = 63,
    kOpRawCommand = 64,
    kOpMenuOn = 65,
    kOpMenuOff = 66,
    kOpFlip = 67,
    kOpApplePeel = 68,
    kOpRunPattern = 69,
    kOpStartPatternRecording = 70,
    kOpStopPatternRecording = 71,
    kOpPatternAction2 = 72,
    kOpMenuEnter = 73,
    kOpRepeat = -1,          // what the periodic step issues to resend kept bytes
};

// The number of opcodes the module declares (published as OPCODE_MAX).
constexpr int kOpcodeCount = 74;

// Updates the camera's motion state, builds the command bytes with the
// camera's protocol, keeps them for repetition when the protocol asks for it,
// and sends them to the camera's stream. Called with the controller's lock held.
void ExecuteCommand(PtzCamera& camera, int opcode, double parm);

}  // namespace vorna
