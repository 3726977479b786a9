#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>

#include "core/command_executor.h"
#include "protocols/protocol_table.h"
#include "support/fake_clock.h"
#include "support/recording_host.h"
#include "vorna/ptz.h"

using namespace vorna;

namespace {

// FNV-1a over every frame, each closed by its length, so that no two
// sequences of frames share a digest by mere concatenation.
uint64_t Digest(const std::vector<std::string>& frames) {
    uint64_t hash = 14695981039346656037ull;
    auto mix = [&hash](unsigned char byte) { hash = (hash ^ byte) * 1099511628211ull; };
    for (const std::string& frame : frames) {
        for (const char c : frame) mix(static_cast<unsigned char>(c));
        for (int shift = 0; shift < 32; shift += 8) mix(static_cast<unsigned char>(frame.size() >> shift));
    }
    return hash;
}

}  // namespace

// Every opcode on every protocol with the most extreme parameters and
// addresses, each after the three speeds were set to the same parameter: no
// arithmetic may be undefined (the sanitizer build stops at the first), and
// the frames are those of plain two's-complement wrap-around, pinned by a
// digest of them all.
TEST(ExtremeParm, EveryOpcodeOnEveryProtocolIsDefinedAndKeepsItsFrames) {
    const double parms[] = {INT_MIN, INT_MIN + 1.0, -1.0, 0.0, 1.0, INT_MAX - 1.0, INT_MAX, 1e300, -1e300,
                            std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()};
    const uint32_t addresses[] = {0u, 1u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu};
    const int speedOpcodes[] = {VORNA_OP_SET_ZOOM_SPEED, VORNA_OP_SET_PAN_SPEED, VORNA_OP_SET_TILT_SPEED};
    vorna_test::FakeClock clock;
    vorna_test::RecordingHost host;
    ProtocolTable protocols;
    FillProtocolTable(protocols);
    for (const auto& entry : protocols) {
        for (int opcode = kOpRepeat; opcode <= VORNA_OPCODE_MAX; ++opcode) {
            for (const double parm : parms) {
                for (const uint32_t address : addresses) {
                    PtzCamera camera;
                    camera.protocol = entry.second.get();
                    camera.stream = 1;
                    camera.address = address;
                    for (const int speed : speedOpcodes) ExecuteCommand(camera, speed, parm);
                    ExecuteCommand(camera, VORNA_OP_PAN_RIGHT, parm);
                    ExecuteCommand(camera, opcode, parm);
                    ExecuteCommand(camera, kOpRepeat, parm);
                    clock.now += 1000;
                }
            }
        }
    }
    EXPECT_EQ(Digest(host.SerialPayloads()), 9417384357037638270u) << host.SerialPayloads().size() << " frames";
}
