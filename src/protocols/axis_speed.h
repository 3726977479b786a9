// Axis speeds arrive signed: the sign is the direction, the size the speed.
#pragma once

#include <cstdint>

namespace vorna {

// The size of a signed speed. The most negative int has one too (2^31), so
// frames can take any speed the executor passes without overflow.
inline uint32_t SpeedMagnitude(int speed) {
    const uint32_t bits = static_cast<uint32_t>(speed);
    return speed < 0 ? 0u - bits : bits;
}

}  // namespace vorna
