#include "protocols/frame_decoder.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "protocols/protocol_table.h"
#include "support/recording_host.h"

using namespace vorna;
using vorna_test::FromHex;
using vorna_test::Hex;

namespace {

// Calls the builder a decoded frame names.
Bytes Build(CProtocol& p, const std::string& op, uint32_t address, const std::vector<int>& a) {
    const auto arg = [&](size_t i) { return i < a.size() ? a[i] : 0; };
    if (op == "StopAxes") return p.StopAxes(address, arg(0), arg(1), arg(2), arg(3), arg(4));
    if (op == "Pan") return p.Pan(address, arg(0));
    if (op == "Tilt") return p.Tilt(address, arg(0));
    if (op == "Zoom") return p.Zoom(address, arg(0));
    if (op == "Move") return p.Move(address, arg(0), arg(1), arg(2));
    if (op == "Preset") return p.Preset(address, arg(0), arg(1));
    if (op == "SetZoomSpeed") return p.SetZoomSpeed(address, arg(0));
    if (op == "Iris") return p.Iris(address, arg(0));
    if (op == "Focus") return p.Focus(address, arg(0));
    if (op == "AutoIris") return p.AutoIris(address, arg(0));
    if (op == "AutoFocus") return p.AutoFocus(address, arg(0));
    if (op == "RawCommand") return p.RawCommand(address, static_cast<uint32_t>(arg(0)));
    if (op == "Menu") return p.Menu(address, arg(0));
    if (op == "MenuEnter") return p.MenuEnter(address, arg(0));
    if (op == "MenuNavigate") return p.MenuNavigate(address, arg(0), arg(1), arg(2));
    if (op == "Flip") return p.Flip(address, arg(0));
    if (op == "ApplePeel") return p.ApplePeel(address, arg(0));
    if (op == "Pattern") return p.Pattern(address, arg(0), arg(1));
    return {};
}

// Draws arguments from the range the executor passes for each builder.
class ArgumentDraw {
public:
    explicit ArgumentDraw(unsigned seed) : random_(seed) {}

    int In(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }

    std::vector<int> For(const std::string& op, const CProtocol& protocol) {
        if (op == "Move") return {Speed(), Speed(), In(-8, 8)};
        if (op == "Pan" || op == "Tilt" || op == "Zoom") return {Speed()};
        if (op == "StopAxes") {
            std::vector<int> axes(5, 0);
            const int axis = In(0, 4);
            axes[axis] = axis < 3 ? Speed() : Direction();
            return axes;
        }
        if (op == "Preset") return {In(1, protocol.GetPresetCount()), In(0, 2)};
        if (op == "Pattern") return {In(0, 3), In(0, 3)};
        if (op == "SetZoomSpeed") return {In(0, 15)};
        if (op == "Iris" || op == "Focus") return {Direction()};
        if (op == "AutoIris" || op == "AutoFocus" || op == "Menu") return {In(0, 1)};
        if (op == "RawCommand") return {static_cast<int>(random_())};
        if (op == "MenuNavigate") {
            std::vector<int> keys(3, 0);
            const int key = In(0, 2);
            keys[key] = key == 2 ? 1 : Direction();
            return keys;
        }
        return {0};
    }

private:
    int Speed() { return In(-64, 64); }
    int Direction() { return In(-1, 1); }
    std::mt19937 random_;
};

const char* const kOperations[] = {"StopAxes", "Pan",       "Tilt",       "Zoom",         "Move",
                                   "Preset",   "SetZoomSpeed", "Iris",   "Focus",        "AutoIris",
                                   "AutoFocus", "RawCommand", "Menu",     "MenuEnter",   "MenuNavigate",
                                   "Flip",     "ApplePeel", "Pattern"};

// Where one frame does for the camera what several operations ask for, the
// decoder names what the camera does. `args` are the builder's.
std::string ExpectedOperation(const std::string& protocol, const std::string& op, const std::vector<int>& args) {
    const bool pelcoD = protocol == "Pelco-D" || protocol == "HSD-Pelco-D";
    const bool sensormatic = protocol == "AD-RS422";
    // Pelco and Bosch have one all-zero frame that stops every axis and the lens.
    if ((pelcoD || protocol == "Pelco-P" || protocol == "Bosch") && (op == "Iris" || op == "Focus") && args[0] == 0) {
        return "Move";
    }
    // Selecting a menu item is the iris-open frame; an HSD menu closes with
    // iris close, then that stop frame.
    if (pelcoD && (op == "MenuEnter" || (op == "Menu" && args[0] == 0))) return "Iris";
    // AD-RS422 stops each axis with the axis' stop command, whatever asks for
    // it; a move is one frame per moving axis; one special function switches
    // auto iris and auto focus; a menu item is selected with focus far.
    if (sensormatic && (op == "Pan" || op == "Tilt" || op == "Zoom") && args[0] == 0) return "StopAxes";
    if (sensormatic && op == "Move") return args[0] != 0 ? "Pan" : args[1] != 0 ? "Tilt" : "Zoom";
    if (sensormatic && op == "AutoFocus") return "AutoIris";
    if (sensormatic && op == "MenuEnter") return "Focus";
    return op;
}

std::string Joined(const std::vector<DecodedFrame>& frames) {
    std::string bytes;
    for (const DecodedFrame& frame : frames) bytes += frame.bytes;
    return bytes;
}

bool HasFrame(const std::vector<DecodedFrame>& frames, const std::string& bytes) {
    for (const DecodedFrame& frame : frames) {
        if (frame.bytes == bytes) return true;
    }
    return false;
}

// decode(build(op, args)) names op (or what the camera does, above) with the
// address and arguments the frame carries: building what was decoded gives
// the same frame back. One decoder reads all messages, as on a line.
void ExpectRoundTrip(const std::string& name, unsigned seed) {
    ProtocolTable table, rebuilt;
    FillProtocolTable(table);
    FillProtocolTable(rebuilt);
    CProtocol& protocol = *FindProtocol(table, name);
    const std::unique_ptr<FrameDecoder> line = MakeFrameDecoder(name);
    ArgumentDraw draw(seed);
    for (int round = 0; round < 300; ++round) {
        for (const char* op : kOperations) {
            const uint32_t address = draw.In(protocol.GetMinAddress(), protocol.GetMaxAddress());
            const std::vector<int> args = draw.For(op, protocol);
            const Bytes message = Build(protocol, op, address, args);
            if (message.empty()) continue;
            SCOPED_TRACE(name + " " + op + " -> " + Hex(message));
            const std::vector<DecodedFrame> frames = line->Feed(message.data(), message.size());
            ASSERT_EQ(Joined(frames), message);
            bool named = std::string(op) == "RawCommand";
            for (const DecodedFrame& frame : frames) {
                ASSERT_NE(frame.kind, FrameKind::kUnknown) << frame.error;
                ASSERT_EQ(frame.address, static_cast<int>(address));
                const Bytes again = Build(*FindProtocol(rebuilt, name), frame.operation, address, frame.args);
                ASSERT_TRUE(HasFrame(DecodeMessage(name, again), frame.bytes)) << frame.operation << " " << frame.meaning;
                named = named || frame.operation == ExpectedOperation(name, op, args);
            }
            EXPECT_TRUE(named);
        }
    }
}

}  // namespace

TEST(FrameDecoder, RoundTripsEveryBuilder) {
    for (const char* name : {"Pelco-D", "HSD-Pelco-D", "Pelco-P", "AD-RS422", "Bosch", "GE-Impac", "GE-ASCII", "Panasonic"}) ExpectRoundTrip(name, 17);
}

// Each read is fed on its own; every frame is summed up as
// "address operation args" or "!error hex".
TEST(FrameDecoder, StreamsResynchroniseAfterGarbageAndKeepSplitFrames) {
    struct Stream {
        const char* protocol;
        std::vector<std::string> reads;
        std::vector<std::string> frames;
    };
    const Stream streams[] = {
        {"Pelco-D",
         {"13 37 FF 01 00", "04 1F 00 24 FF 02 00 07 00 05 0E FF 01", "00 00 00 00 01 FF 01 00 00 00 00 02 FF 03"},
         {"!bad framing 13 37", "1 Move -32 0 0", "2 Preset 5 1", "1 Move 0 0 0",
          "!bad checksum 0x02, expected 0x01 FF 01 00 00 00 00 02", "!truncated FF 03"}},
        {"Pelco-D",
         {"FF FF 01 00 04 1F", "00 24"},
         {"!bad framing FF", "1 Move -32 0 0"}},
    };
    for (const Stream& stream : streams) {
        std::unique_ptr<FrameDecoder> decoder = MakeFrameDecoder(stream.protocol);
        std::vector<DecodedFrame> frames;
        for (const std::string& read : stream.reads) {
            const std::string bytes = FromHex(read);
            for (DecodedFrame& frame : decoder->Feed(bytes.data(), bytes.size())) frames.push_back(frame);
        }
        for (DecodedFrame& frame : decoder->Flush()) frames.push_back(frame);
        std::vector<std::string> summed;
        for (const DecodedFrame& frame : frames) {
            std::string sum = frame.kind == FrameKind::kUnknown ? "!" + frame.error + " " + Hex(frame.bytes)
                                                                : std::to_string(frame.address) + " " + frame.operation;
            for (int arg : frame.args) sum += " " + std::to_string(arg);
            summed.push_back(sum);
        }
        EXPECT_EQ(summed, stream.frames);
    }
}
