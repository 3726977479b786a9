#include "protocols/frame_decoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "protocols/protocol_table.h"
#include "support/frames_file.h"
#include "support/protocol_call.h"
#include "support/recording_host.h"

using namespace vorna;
using namespace vorna_test;

namespace {

bool IsAdMegaPower(const std::string& protocol) { return protocol.compare(0, 4, "AD-M") == 0; }

Bytes Build(CProtocol& protocol, const std::string& op, int address, const std::vector<int>& args) {
    std::vector<FrameArg> all(1 + args.size());
    all[0].number = address;
    for (size_t i = 0; i < args.size(); ++i) all[i + 1].number = args[i];
    return CallOperation(protocol, op, all);
}

// Draws arguments from the range the executor passes for each builder.
class ArgumentDraw {
public:
    explicit ArgumentDraw(unsigned seed) : random_(seed) {}

    int In(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }

    std::vector<int> For(const std::string& op, const CProtocol& protocol) {
        if (op == "Move") return {Speed(), Speed(), In(-8, 8)};
        if (op == "Pan" || op == "Tilt" || op == "Zoom") return {Speed()};
        if (op == "StopAxes") return OneOf(5, In(0, 4) < 3 ? Speed() : Direction());
        if (op == "Preset") return {In(1, protocol.GetPresetCount()), In(0, 2)};
        if (op == "Pattern") return {In(0, 3), In(0, 3)};
        if (op == "SetZoomSpeed") return {In(0, 15)};
        if (op == "Iris" || op == "Focus") return {Direction()};
        if (op == "AutoIris" || op == "AutoFocus" || op == "Menu") return {In(0, 1)};
        if (op == "RawCommand") return {static_cast<int>(random_())};
        if (op == "MenuNavigate") return OneOf(3, Direction());
        return {0};
    }

private:
    int Speed() { return In(-64, 64); }
    int Direction() { return In(-1, 1); }
    // One of `count` arguments set, as the executor passes them.
    std::vector<int> OneOf(int count, int value) {
        std::vector<int> args(count, 0);
        args[In(0, count - 1)] = value;
        return args;
    }
    std::mt19937 random_;
};

const char* const kOperations[] = {"StopAxes",     "Pan",       "Tilt",         "Zoom",     "Move",      "Preset",
                                   "SetZoomSpeed", "Iris",      "Focus",        "AutoIris", "AutoFocus", "RawCommand",
                                   "Menu",         "MenuEnter", "MenuNavigate", "Flip",     "ApplePeel", "Pattern"};

// Where one frame does for the camera what several operations ask for, the
// decoder names what the camera does. `args` are the builder's.
std::string ExpectedOperation(const std::string& protocol, const std::string& op, const std::vector<int>& args) {
    const bool pelcoD = protocol == "Pelco-D" || protocol == "HSD-Pelco-D";
    const bool sensormatic = protocol == "AD-RS422";
    const int first = args.empty() ? 0 : args[0];
    // An unknown preset or pattern action still sends a frame, with command 0:
    // to the camera a raw command.
    if ((op == "Preset" && args[1] > 2 && (pelcoD || protocol == "Pelco-P")) ||
        (op == "Pattern" && args[1] > 3 && sensormatic)) {
        return "RawCommand";
    }
    // Pelco and Bosch have one all-zero frame that stops every axis and the lens.
    if ((pelcoD || protocol == "Pelco-P" || protocol == "Bosch") && (op == "Iris" || op == "Focus") && first == 0) {
        return "Move";
    }
    // Selecting a menu item is the iris-open frame; an HSD menu closes with
    // iris close, then that stop frame.
    if (pelcoD && (op == "MenuEnter" || (op == "Menu" && first == 0))) return "Iris";
    // AD-RS422 stops each axis with the axis' stop command, whatever asks for
    // it; a move is one frame per moving axis; a menu item is selected with
    // focus far. (Clearing a preset sends the store frame, so it reads back as
    // a store: the same operation with action 0, which the rebuild accepts.)
    if (sensormatic && (op == "Pan" || op == "Tilt" || op == "Zoom") && first == 0) return "StopAxes";
    if (sensormatic && op == "Move") return first != 0 ? "Pan" : args[1] != 0 ? "Tilt" : "Zoom";
    if (sensormatic && op == "MenuEnter") return "Focus";
    // AD-RS422 and the MegaPower switch auto iris and auto focus with one
    // command.
    if ((sensormatic || IsAdMegaPower(protocol)) && op == "AutoFocus") return "AutoIris";
    return op;
}

// The same frame, except that a MegaPower key sequence may come on another
// keyboard channel.
bool SameFrame(const std::string& protocol, const std::string& a, const std::string& b) {
    if (!IsAdMegaPower(protocol) || a.empty() || b.empty()) return a == b;
    return a.compare(0, a.size() - 1, b, 0, b.size() - 1) == 0;
}

// A lens direction, a lens stop and a menu step are a sign, however the
// frame carries them.
void ExpectSigns(const DecodedFrame& frame) {
    const bool lens = frame.operation == "Iris" || frame.operation == "Focus" || frame.operation == "MenuNavigate";
    const size_t first = frame.operation == "StopAxes" ? 3 : lens ? 0 : frame.args.size();
    for (size_t i = first; i < frame.args.size(); ++i)
        EXPECT_LE(std::abs(frame.args[i]), 1) << frame.operation << " " << frame.meaning;
}

// Every frame is valid, and building the operation it names, with its address
// and arguments, gives that frame again: it carries those arguments.
void ExpectFramesRebuild(const std::string& protocol, const std::vector<DecodedFrame>& frames) {
    ProtocolTable rebuilt;
    FillProtocolTable(rebuilt);
    for (const DecodedFrame& frame : frames) {
        ASSERT_NE(frame.kind, FrameKind::kUnknown) << frame.error;
        if (frame.operation == "Select" || frame.operation == "PassThrough") continue;
        ExpectSigns(frame);
        bool found = false;
        const Bytes again = Build(*FindProtocol(rebuilt, protocol), frame.operation, frame.address, frame.args);
        for (const DecodedFrame& other : DecodeMessage(protocol, again)) {
            found = found || SameFrame(protocol, other.bytes, frame.bytes);
        }
        EXPECT_TRUE(found) << frame.operation << " " << frame.meaning << " rebuilds " << Hex(again);
    }
}

bool Names(const std::vector<DecodedFrame>& frames, const std::string& operation) {
    for (const DecodedFrame& frame : frames) {
        if (frame.operation == operation) return true;
    }
    return false;
}

std::string Joined(const std::vector<DecodedFrame>& frames) {
    std::string bytes;
    for (const DecodedFrame& frame : frames) bytes += frame.bytes;
    return bytes;
}

const char* const kProtocols[] = {"Pelco-D",  "HSD-Pelco-D", "Pelco-P",  "Panasonic",      "AD-RS422", "Bosch",
                                  "GE-ASCII", "GE-Impac",    "AD-M3200", "AD-M3200 Multi", "AD-MP48",  "AD-MP48 Multi"};

}  // namespace

// decode(build(op, args)) names op (or what the camera does) with the address
// and the arguments the frame carries. One decoder reads all messages of a
// protocol, as on a line.
TEST(FrameDecoder, RoundTripsEveryBuilder) {
    for (const char* name : kProtocols) {
        ProtocolTable table;
        FillProtocolTable(table);
        CProtocol& protocol = *FindProtocol(table, name);
        const std::unique_ptr<FrameDecoder> line = MakeFrameDecoder(name);
        ArgumentDraw draw(17);
        for (int round = 0; round < 200; ++round) {
            for (const char* op : kOperations) {
                const int address = draw.In(protocol.GetMinAddress(), protocol.GetMaxAddress());
                const std::vector<int> args = draw.For(op, protocol);
                const Bytes message = Build(protocol, op, address, args);
                if (message.empty()) continue;
                SCOPED_TRACE(std::string(name) + " " + op + " -> " + Hex(message));
                const std::vector<DecodedFrame> frames = line->Feed(message.data(), message.size());
                ASSERT_EQ(Joined(frames), message);
                ExpectFramesRebuild(name, frames);
                for (const DecodedFrame& frame : frames) ASSERT_EQ(frame.address, address);
                EXPECT_TRUE(std::string(op) == "RawCommand" || Names(frames, ExpectedOperation(name, op, args)));
            }
        }
    }
}

// The golden rows read back: each row's bytes decode to its operation (or
// what the camera does) and to arguments that build those bytes again. A
// kept command passed through is the host's own text, with no operation.
TEST(FrameDecoder, ReadsEveryGoldenRowBack) {
    for (const std::string& file : FramesFilesIn(VORNA_FRAMES_DIR)) {
        std::unique_ptr<FrameDecoder> line;
        int section = -1;
        for (const FramesRow& row : ReadFramesFile(file)) {
            if (row.section != section) {
                section = row.section;
                line = MakeFrameDecoder(row.protocol);
            }
            if (row.expected.empty() || row.operation == "PassThrough") continue;
            SCOPED_TRACE(row.where);
            const std::vector<DecodedFrame> frames = line->Feed(row.expected.data(), row.expected.size());
            ASSERT_EQ(Joined(frames), row.expected);
            ExpectFramesRebuild(row.protocol, frames);
            std::vector<int> args;
            for (size_t i = 1; i < row.args.size(); ++i) args.push_back(static_cast<int>(row.args[i].number));
            EXPECT_TRUE(row.operation == "RawCommand" ||
                        Names(frames, ExpectedOperation(row.protocol, row.operation, args)));
        }
    }
}

// Any bytes in any reads come out again, whole and in order, as frames or as
// unknown bytes: a decoder never loses, repeats or overreads a byte.
TEST(FrameDecoder, AccountsForEveryByteOfAnyTraffic) {
    std::mt19937 random(5);
    // Frame starts and ends, digits and keys, so that much looks like a frame.
    const std::string alphabet = FromHex("FF A0 AF 86 87 02 03 00 01 07 80") + "0123456789abcdM#RLTW~;:AD^'%";
    std::string traffic;
    for (int i = 0; i < 20000; ++i) {
        traffic += random() % 4 == 0 ? static_cast<char>(random()) : alphabet[random() % alphabet.size()];
    }
    for (const char* name : kProtocols) {
        const std::unique_ptr<FrameDecoder> line = MakeFrameDecoder(name);
        std::string seen;
        for (size_t at = 0; at < traffic.size();) {
            const size_t read = std::min<size_t>(1 + random() % 64, traffic.size() - at);
            seen += Joined(line->Feed(traffic.data() + at, read));
            at += read;
        }
        seen += Joined(line->Flush());
        EXPECT_EQ(seen, traffic) << name;
    }
}

// Each read is fed on its own; every frame is summed up as
// "address operation args" or "!error hex". A MegaPower keyboard channel
// keeps the camera selected on it.
TEST(FrameDecoder, StreamsResynchroniseAfterGarbageAndKeepSplitFrames) {
    struct Stream {
        const char* protocol;
        std::vector<std::string> reads;
        std::vector<std::string> frames;
    };
    const Stream streams[] = {
        {"Pelco-D",
         {FromHex("13 37 FF 01 00"), FromHex("04 1F 00 24 FF 02 00 07 00 05 0E FF 01"),
          FromHex("00 00 00 00 01 FF 01 00 00 00 00 02 FF 03")},
         {"!bad framing 13 37", "1 Move -32 0 0", "2 Preset 5 1", "1 Move 0 0 0",
          "!bad checksum 0x02, expected 0x01 FF 01 00 00 00 00 02", "!truncated FF 03"}},
        {"Pelco-D", {FromHex("FF FF 01 00 04 1F"), FromHex("00 24")}, {"!bad framing FF", "1 Move -32 0 0"}},
        {"Panasonic",
         {"\x02"
          "AD01;GC7:90",
          "28100\x03\x02"
          "AD12;GC7:9028870\x03\x02"
          "AD"},
         {"1 Move 0 0 0", "12 Move -29 0 0", "!truncated 02 41 44"}},
        {"Panasonic",
         {"\x02"
          "AD01;GC7:0021002\x03\x02"
          "AD01;GC7:9034004\x03\x02"
          "AD1234567890;GC7:9028100\x03"},
         {"1 Iris 1", "1 Focus -1", "1234567890 Move 0 0 0"}},
        {"GE-ASCII", {"00l005~00p005~"}, {"5 StopAxes -1 0 0 0 0", "5 StopAxes 0 0 0 1 0"}},
        {"GE-Impac",
         {FromHex("FF 07 20 70 80 00 05 00 E4 FF 07 20 6E 80 00 05 00 E6")},
         {"5 StopAxes 0 0 0 1 0", "5 StopAxes 0 0 0 0 1"}},
        // A speed with a direction no camera knows reads back as the raw command it
        // is (C0 86 20 00).
        {"AD-RS422", {FromHex("01 C0 86 20 99")}, {"1 RawCommand -1064951808"}},
        {"AD-M3200 Multi",
         {"xx1Ma5#a5R", "a2Mb7#b1Ub2Da"},
         {"!bad framing 78 78", "5 Select 1", "5 Move 40 0 0", "7 Select 2", "7 Move 0 8 0", "5 Move 0 -16 0"}},
    };
    for (const Stream& stream : streams) {
        std::unique_ptr<FrameDecoder> decoder = MakeFrameDecoder(stream.protocol);
        std::vector<DecodedFrame> frames;
        for (const std::string& read : stream.reads) {
            for (DecodedFrame& frame : decoder->Feed(read.data(), read.size())) frames.push_back(frame);
        }
        for (DecodedFrame& frame : decoder->Flush()) frames.push_back(frame);
        std::vector<std::string> summed;
        for (const DecodedFrame& frame : frames) {
            std::string sum = frame.kind == FrameKind::kUnknown ? "!" + frame.error + " " + Hex(frame.bytes)
                                                                : std::to_string(frame.address) + " " + frame.operation;
            for (int arg : frame.args) sum += " " + std::to_string(arg);
            summed.push_back(sum);
        }
        EXPECT_EQ(summed, stream.frames) << stream.protocol;
    }
}
