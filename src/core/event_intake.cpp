#include "core/event_intake.h"

namespace vorna {

int HandleEvent(PtzController&, const char*, int64_t, bool) { return 0; }

}  // namespace vorna
