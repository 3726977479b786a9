// Builds the configuration document from the camera table: the form in which
// the configuration is kept in "VORNA.xml" and sent to the host.
#pragma once

#include <tinyxml.h>

#include "core/ptz_controller.h"

namespace vorna {

// Appends the declaration and the `Tarn` tree for every camera and every
// registered protocol to `document`. Holds the controller lock throughout.
void BuildConfigDocument(PtzController& controller, TiXmlDocument& document);

}  // namespace vorna
