// A line's writer on a fake clock and a fake device: what goes out, in which
// order, and when, for a line the module floods with repeating frames.
#include <gtest/gtest.h>

#include <cctype>
#include <thread>
#include <map>
#include <vector>

#include "line_writer.h"
#include "wire_time.h"

using namespace vorna_host;
using Clock = LineWriter::Clock;
using std::chrono::milliseconds;

namespace {

// Test messages read "<camera><kind>[axes][tag]", kind M (motion), S (stop),
// P (preset), U (unreadable), axes p, t, z (default: all three), padded to the
// 18 bytes of a Panasonic frame.
constexpr size_t kFrameBytes = 18;

std::string Message(const std::string& text) { return text + std::string(kFrameBytes - text.size(), '.'); }

std::string Tag(const std::string& bytes) { return bytes.substr(0, bytes.find('.')); }

MessageClass ReadTestMessage(const std::string& bytes) {
    const std::map<char, MessageKind> kinds = {
        {'M', MessageKind::kMotion}, {'S', MessageKind::kStop}, {'P', MessageKind::kOther}};
    const size_t kindAt = bytes.find_first_not_of("0123456789");
    if (kindAt == 0 || kinds.count(bytes[kindAt]) == 0) return MessageClass{};
    unsigned axes = 0;
    for (size_t at = kindAt + 1; at < bytes.size() && std::islower(bytes[at]); ++at)
        axes |= bytes[at] == 'p' ? kPan : bytes[at] == 't' ? kTilt : kZoom;
    return MessageClass{std::stoi(bytes.substr(0, kindAt)), kinds.at(bytes[kindAt]), axes ? axes : kPan | kTilt | kZoom};
}

// The writer driven as its thread would drive it, on simulated time, over a
// device that records when each frame was handed to it.
struct SimulatedLine {
    struct Sent {
        Clock::time_point at;
        std::string tag;
    };
    class Device : public SerialLine {
    public:
        explicit Device(SimulatedLine& line) : line_(line) {}
        bool Send(const uint8_t* bytes, size_t length, std::string&) override {
            line_.wire.push_back(Sent{line_.now, Tag(std::string(reinterpret_cast<const char*>(bytes), length))});
            return true;
        }
        size_t Unsent() override { return line_.unsent; }

    private:
        SimulatedLine& line_;
    };

    explicit SimulatedLine(int baud, bool keepLineOrder = false)
        : frameTime(WireTime(kFrameBytes, baud)),
          writer(std::make_unique<Device>(*this), LineScheduler(ReadTestMessage, keepLineOrder), baud,
                 [](const std::string& problem) { ADD_FAILURE() << problem; }) {}

    void RunUntil(Clock::time_point until) {
        for (Clock::time_point next = writer.Pump(now); next <= until; next = writer.Pump(now)) now = next;
        now = until;
    }
    void Hand(const std::string& text) {
        writer.Hand(Message(text), now);
        writer.Pump(now);
    }
    std::vector<std::string> Tags() const {
        std::vector<std::string> tags;
        for (const auto& sent : wire) tags.push_back(sent.tag);
        return tags;
    }
    // When the first frame tagged `tag` left the wire, counted from `from`.
    Clock::duration LeftAfter(const std::string& tag, Clock::time_point from) const {
        for (const auto& sent : wire)
            if (sent.tag == tag && sent.at >= from) return sent.at + frameTime - from;
        return Clock::duration::max();
    }

    Clock::time_point now{};
    std::vector<Sent> wire;
    size_t unsent = 0;
    Clock::duration frameTime;
    LineWriter writer;
};

TEST(LineWriter, WaitingMessagesGoOutInTheirTurn) {
    // All handed at once: the first goes on the idle wire, the others wait.
    const struct {
        const char* name;
        bool keepLineOrder;
        std::vector<std::string> handed;
        std::vector<std::string> sent;
    } rows[] = {
        {"newest motion wins", false, {"1M1", "1M2", "1M3", "1M4"}, {"1M1", "1M4"}},
        {"a stop replaces the waiting motion", false, {"0P", "1M1", "1S"}, {"0P", "1S"}},
        {"a stop of one axis leaves the others' waiting", false, {"0P", "1Sp", "1St", "1Sz"},
         {"0P", "1Sp", "1St", "1Sz"}},
        {"a stop of every axis replaces each axis's motion", false, {"0P", "1Mp", "2P1", "1Mt", "1S"},
         {"0P", "1S", "2P1"}},
        {"a replacement keeps its place", false, {"0P", "1M1", "2P1", "1M2"}, {"0P", "1M2", "2P1"}},
        {"presets keep their order", false, {"1P1", "1P2", "1M1", "1P3"}, {"1P1", "1P2", "1M1", "1P3"}},
        {"a stop goes before other cameras", false, {"0P", "2P1", "2P2", "3M1", "1S"},
         {"0P", "1S", "2P1", "2P2", "3M1"}},
        {"a stop keeps its camera's order", false, {"0P", "1P1", "2P1", "1S"}, {"0P", "1P1", "1S", "2P1"}},
        {"oldest first between cameras", false, {"1P1", "2P1", "1P2", "2P2"}, {"1P1", "2P1", "1P2", "2P2"}},
        {"unreadable messages keep their order", false, {"U1", "U2", "1M1", "U3", "1M2"}, {"U1", "U2", "1M2", "U3"}},
        {"a line that keeps its order only paces", true, {"1M1", "1M2", "2P1", "1S"}, {"1M1", "1M2", "2P1", "1S"}},
    };
    for (const auto& row : rows) {
        SimulatedLine line(2400, row.keepLineOrder);
        for (const std::string& message : row.handed) line.writer.Hand(Message(message), line.now);
        line.RunUntil(line.now + milliseconds(1000));
        EXPECT_EQ(row.sent, line.Tags()) << row.name;
    }
}

// Eight cameras repeat their motion (or, once stopped, their stop) every
// 250 ms: at 2400 baud that is more than twice what the wire carries.
void Repeat(SimulatedLine& line, Clock::time_point until, int stopped = 0) {
    while (line.now < until) {
        for (int camera = 1; camera <= 8; ++camera) line.Hand(std::to_string(camera) + (camera == stopped ? "S" : "M"));
        line.RunUntil(line.now + milliseconds(250));
    }
}

TEST(LineWriter, OnASaturatedLineEveryCameraGetsItsTurnAndAStopLeavesWithinTwoFrameTimes) {
    SimulatedLine line(2400);
    Repeat(line, Clock::time_point(milliseconds(10000)));
    // A camera's frame waits at most for one frame of each other camera,
    // after up to one repeat interval (3.3 frame times) before it is handed.
    const size_t longestGap = 7 + 4;
    std::map<std::string, size_t> lastSent;
    for (size_t i = 0; i < line.wire.size(); ++i) {
        const auto last = lastSent.find(line.wire[i].tag);
        if (last != lastSent.end()) {
            EXPECT_LE(i - last->second, longestGap) << line.wire[i].tag << " at " << i;
        }
        lastSent[line.wire[i].tag] = i;
    }
    EXPECT_EQ(8u, lastSent.size());

    // The stop overtakes a long preset sequence of another camera too.
    for (int preset = 0; preset < 40; ++preset) line.Hand("9P");
    line.RunUntil(line.now + milliseconds(10));
    const Clock::time_point callback = line.now;
    line.Hand("3S");
    Repeat(line, line.now + milliseconds(1000), 3);
    EXPECT_LE(line.LeftAfter("3S", callback), 2 * line.frameTime);
}

TEST(LineWriter, CountsWhatItSentReplacedAndKeptWaiting) {
    SimulatedLine line(2400);
    for (const char* message : {"1M1", "1M2", "1M3", "2P1"}) line.Hand(message);
    line.RunUntil(line.now + line.frameTime);
    const LineCounters counters = line.writer.Counters();
    EXPECT_EQ(1u, counters.sent);
    EXPECT_EQ(1u, counters.replaced);
    EXPECT_EQ(2u, counters.waiting) << "one on the wire, one queued";
    line.RunUntil(line.now + 2 * line.frameTime);
    const LineCounters done = line.writer.Counters();
    EXPECT_EQ(3u, done.sent);
    EXPECT_EQ(0u, done.waiting);
    EXPECT_EQ(3 * line.frameTime, done.worstLatency);
    EXPECT_EQ(2 * line.frameTime, done.medianLatency);
    EXPECT_EQ("line COM1: 3 sent, 1 replaced, 0 waiting; callback to wire worst 225.0 ms, median 150.0 ms",
              DescribeLineCounters("COM1", done));
}

TEST(LineWriter, WaitsWhileTheDriverStillHoldsBytes) {
    SimulatedLine line(9600);
    line.unsent = 96;  // 100 ms at 9600 baud
    line.Hand("1P1");
    line.RunUntil(line.now + milliseconds(99));
    EXPECT_TRUE(line.wire.empty());
    line.unsent = 0;
    line.RunUntil(line.now + milliseconds(2));
    EXPECT_EQ(std::vector<std::string>{"1P1"}, line.Tags());
}

// The callback's threads and the writer's own, for real: every message handed
// over is on the wire when Drain returns.
TEST(LineWriterConcurrency, DrainReturnsWhenEveryHandedMessageIsOut) {
    // A fast wire keeps the test short; the writer does not care which rate.
    SimulatedLine line(1000000);
    line.writer.Start();
    std::vector<std::thread> callbacks;
    for (int camera = 1; camera <= 2; ++camera)
        callbacks.emplace_back([&line, camera] {
            for (int i = 0; i < 200; ++i) line.writer.Hand(Message(std::to_string(camera) + "P"), Clock::now());
        });
    for (std::thread& callback : callbacks) callback.join();
    line.writer.Drain();
    EXPECT_EQ(400u, line.wire.size());
    EXPECT_EQ(400u, line.writer.Counters().sent);
    EXPECT_EQ(0u, line.writer.Counters().waiting);
}

}  // namespace
