// The last thing the host sends before it closes the module: a stop of every
// axis to every camera it commanded, so that no dome is left panning after
// the host ends, whichever way it ends.
#pragma once

#include <cstdio>
#include <vector>

#include "documents.h"
#include "module_driver.h"

namespace vorna_host {

// Stops of pan, tilt, zoom, iris and focus, in one event.
const std::vector<OpcodeCall>& StopEveryAxis();

// Sends pan, tilt, zoom, iris and focus stops to each camera and says so in
// one line on `report` (nothing when there is no camera). A second SIGINT
// from here on ends the host at once.
void StopCameras(ModuleDriver& module, const std::vector<CameraKey>& cameras, FILE* report);

}  // namespace vorna_host
