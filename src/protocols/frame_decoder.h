// Reads camera frames back: bytes seen on a serial line become the protocol
// operations that produced them, in plain words for an installer. The library
// stands apart from the module; vorna-host and the tests link it.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace vorna {

// What a frame does to the camera's motion, for a line scheduler.
enum class FrameKind {
    kMotion,   // sets pan/tilt/zoom/focus/iris motion (a repeat of it included) with some axis moving
    kStop,     // sets motion with every axis it names still
    kOther,    // presets, menu, patterns, raw commands, auto modes, AD camera selection, ...
    kUnknown,  // not a valid frame of this protocol (see `error`)
};

struct DecodedFrame {
    std::string protocol;   // the protocol family's name as in the table ("Pelco-D", "Panasonic", ...)
    int address = -1;       // camera address on the line; AD MegaPower: the camera number; -1: none
    int keyboard = -1;      // AD MegaPower keyboard number (1 to 4: channel letters a to d); -1 elsewhere
    std::string operation;  // the CProtocol operation it matches ("Move", "Preset", "Zoom", ...),
                            // empty for kUnknown
    std::vector<int> args;  // that operation's arguments after the address, as the builder takes them
    FrameKind kind = FrameKind::kUnknown;
    std::string meaning;  // plain words for an installer: "pan left 32, tilt still", "go to preset 5"
    std::string error;    // kUnknown only: "bad checksum 0x24, expected 0x25", "bad framing", "truncated"
    std::string bytes;    // the raw bytes of this frame
};

// Decodes one line's byte stream: keeps partial frames between calls, resynchronises after garbage,
// keeps per-line context (AD MegaPower's selected camera).
class FrameDecoder {
public:
    virtual ~FrameDecoder();
    virtual std::vector<DecodedFrame> Feed(const char* data, size_t size) = 0;
    virtual std::vector<DecodedFrame> Flush() = 0;  // what is left: a truncated frame, reported as such
};

// A decoder for one of the twelve protocol names (null for an unknown name).
std::unique_ptr<FrameDecoder> MakeFrameDecoder(const std::string& protocolName);

// One whole message of the module (one serial output record) decoded on its own.
std::vector<DecodedFrame> DecodeMessage(const std::string& protocolName, const std::string& bytes);

}  // namespace vorna
