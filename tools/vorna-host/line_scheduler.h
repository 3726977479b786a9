// The order in which messages waiting for one serial line go out. A line
// carries a few dozen frames a second; when the module hands over more than
// that (repeating protocols, many moving cameras), the waiting frames must not
// pile up in front of an operator's stop. So, per camera:
//   - newest motion wins: a motion or stop message replaces the camera's
//     waiting motion messages for the axes it sets too (taking the place in
//     line of the first), since only the last motion a camera was told counts;
//     a pan stop never replaces a waiting tilt stop;
//   - every other message (presets, menus, patterns, raw commands) keeps its
//     place and order, and so do messages nobody can read (all in one queue);
//   - a camera with a stop waiting goes before every camera without one;
//     otherwise the camera whose next message has waited longest goes next,
//     so under any load each camera gets its turn.
// A message is one unit: its bytes go out whole, never split or merged.
// On lines whose frames depend on the frames before them (a switcher that
// selects a camera once and then sends it commands), order is all that
// counts: such a line only paces, first come first served.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <string>

namespace vorna_host {

enum class MessageKind {
    kMotion,   // sets the camera moving (or keeps it moving)
    kStop,     // sets every axis it names still
    kOther,    // everything else the camera must receive as sent
    kUnknown,  // not readable as frames of the line's protocol
};

// The axes a motion or stop message sets, as bits.
enum Axis : unsigned { kPan = 1, kTilt = 2, kZoom = 4, kIris = 8, kFocus = 16 };

struct MessageClass {
    int camera = -1;  // the address on the line; -1 when the message names none
    MessageKind kind = MessageKind::kUnknown;
    unsigned axes = 0;  // for motion and stops; 0 when they cannot be told, and then nothing is replaced
};

using MessageClassifier = std::function<MessageClass(const std::string& bytes)>;

struct WaitingMessage {
    std::string bytes;
    std::chrono::steady_clock::time_point handedOver;  // when the module's callback delivered it
    uint64_t arrival = 0;                               // counts the messages handed to the line, from 1
};

class LineScheduler {
public:
    // With `keepLineOrder` every message keeps its place on the line; the
    // classifier is not asked.
    LineScheduler(MessageClassifier classify, bool keepLineOrder)
        : classify_(std::move(classify)), keepLineOrder_(keepLineOrder) {}

    // Returns the arrival number given to the message.
    uint64_t Add(std::string bytes, std::chrono::steady_clock::time_point handedOver);
    bool Empty() const { return waiting_ == 0; }
    size_t Waiting() const { return waiting_; }
    uint64_t Replaced() const { return replaced_; }
    // The smallest arrival number still waiting; UINT64_MAX when none waits.
    uint64_t OldestArrival() const;
    // The message whose turn it is; the scheduler must not be empty.
    WaitingMessage TakeNext();

private:
    struct Entry {
        WaitingMessage message;
        MessageKind kind;
        unsigned axes;
        uint64_t turn;  // place in line between cameras; kept by a replacement
    };
    using CameraQueue = std::deque<Entry>;

    MessageClass Classify(const std::string& bytes) const;
    bool ReplaceWaitingMotion(CameraQueue& queue, WaitingMessage& message, const MessageClass& found);
    CameraQueue* NextCamera();

    MessageClassifier classify_;
    bool keepLineOrder_;
    std::map<int, CameraQueue> cameras_;
    size_t waiting_ = 0;
    uint64_t replaced_ = 0;
    uint64_t arrivals_ = 0;
    uint64_t turns_ = 0;
};

}  // namespace vorna_host
