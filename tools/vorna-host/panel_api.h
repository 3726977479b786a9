// The control panel's JSON API, apart from HTTP: each call names a camera (or
// none), carries a JSON body and gets a status and a JSON answer. A call that
// is malformed, names a camera the module does not know, or asks for more
// than the camera's protocol carries is refused with the reason, and nothing
// goes to the module.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "camera_table.h"
#include "documents.h"
#include "message_router.h"
#include "module_driver.h"
#include "motion_watchdog.h"

namespace vorna_host {

struct PanelReply {
    int status = 200;
    std::string body;  // JSON
};

// A refusal: {"error": reason}.
PanelReply PanelError(int status, const std::string& reason);

class PanelApi {
public:
    using CountersSource = std::function<std::vector<MessageRouter::NamedCounters>()>;

    PanelApi(ModuleDriver& module, const LatestCameraTable& cameras, CountersSource counters,
             MotionWatchdog& watchdog)
        : module_(module), cameras_(cameras), counters_(std::move(counters)), watchdog_(watchdog) {}

    // GET /api/cameras: the module's cameras with what their protocols allow.
    PanelReply Cameras() const;
    // GET /api/lines: each line's counters.
    PanelReply Lines() const;
    // POST /api/cameras/D/N/I/ACTION with `body`; ACTION is command, move,
    // hold or tour.
    PanelReply Act(const CameraKey& camera, const std::string& action, const std::string& body);
    // Stops the cameras left moving without a request for too long and
    // returns them.
    std::vector<CameraKey> StopOverdue(MotionWatchdog::Clock::time_point now);

private:
    PanelReply Send(const CameraKey& camera, const std::vector<OpcodeCall>& calls, bool confirmed);
    PanelReply SendAlarm(const CameraKey& camera, const AlarmCall& alarm);
    PanelReply Command(const CameraKey& camera, const std::string& body);
    PanelReply Move(const CameraKey& camera, const std::string& body);
    PanelReply Tour(const CameraKey& camera, const std::string& body);

    ModuleDriver& module_;
    const LatestCameraTable& cameras_;
    CountersSource counters_;
    MotionWatchdog& watchdog_;
};

}  // namespace vorna_host
