// The control panel's page: panel/index.html with its styles and script
// written into it at build time, so the host serves it from memory.
#pragma once

namespace vorna_host {

const char* PanelPage();

}  // namespace vorna_host
