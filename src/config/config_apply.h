// Applies a configuration document (the file at start, or a host update) to
// the camera table and the serial-line map.
#pragma once

#include "config/xml_document.h"
#include "core/ptz_controller.h"

namespace vorna {

// Applies `document`; true when anything was applied (a camera section with
// a numbered `Input`, or a serial section that touched a camera). A document
// from the file never has its serial sections read; an update with `Delta` 0
// has only those read. Takes the controller lock per element.
bool ApplyConfiguration(PtzController& controller, const XmlDocument& document, bool fromFile);

}  // namespace vorna
