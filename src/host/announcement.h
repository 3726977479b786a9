#pragma once

namespace vorna {

// Sends the module's name, identifier and version to the host (once per Open).
void AnnounceModule();

}  // namespace vorna
