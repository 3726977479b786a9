// The configuration's two entry roads: the start-up at Open and the host's
// updates through IOCTL op 2; both end in a save that rewrites the file and
// tells the host.
#pragma once

#include <cstddef>

#include "core/ptz_controller.h"

namespace vorna {

// The name of the configuration file, in the working directory.
extern const char* const kConfigFileName;

// Registers the protocols, loads and applies the configuration file, saves it
// back (file and notice to the host) and marks the controller started. A file
// that is there but does not load is kept aside under another name and
// reported, so that the save cannot overwrite a site's configuration.
int Start(PtzController& controller);

// Applies a configuration document from the host; saves and notifies when
// anything changed. Returns 0.
int Update(PtzController& controller, const char* text, size_t length);

// Rebuilds the document from the camera table, writes it to the file and
// sends it to the host; a file that could not be written is reported, and the
// notice goes out all the same.
void Save(PtzController& controller);

}  // namespace vorna
