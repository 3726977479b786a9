// Intake of the host's event documents: immediate PTZ commands and the start
// and end of alarm-driven commands.
#pragma once

#include <cstdint>

#include "core/ptz_controller.h"

namespace vorna {

// Parses an event document and carries out each Input in document order,
// taking the controller's lock per Input. Malformed parts are dropped
// silently. Returns 0.
int HandleEvent(PtzController& controller, const char* text, int64_t length, bool alarmForm);

// Queues an open-ended alarm command at the back of the camera's queue.
void StartAlarmCommand(PtzCamera& camera, uint32_t action, int opcode, double parm);

// Gives the oldest still open entry with this action, opcode and parameter
// (compared exactly) its end time; does nothing when none matches.
void EndAlarmCommand(PtzCamera& camera, uint32_t action, int opcode, int64_t endTime, double parm);

}  // namespace vorna
