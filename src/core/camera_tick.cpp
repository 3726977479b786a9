#include "core/camera_tick.h"

namespace vorna {

void CameraTick(PtzCamera&, int64_t) {}

}  // namespace vorna
