#include "config/config_service.h"

namespace vorna {

const char* const kConfigFileName = "VORNA.xml";

int Start(PtzController& controller) {
    FillProtocolTable(controller.protocols);
    controller.started = true;
    return 0;
}

int Update(PtzController&, const char*, size_t) { return 0; }

}  // namespace vorna
