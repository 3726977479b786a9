#include "message_class.h"

namespace vorna_host {

namespace {

bool SetsMotion(vorna::FrameKind kind) { return kind == vorna::FrameKind::kMotion || kind == vorna::FrameKind::kStop; }

// The axes a motion frame sets, from the operation that built it; 0 when the
// operation does not tell (a raw command that happens to move the camera).
unsigned AxesOf(const vorna::DecodedFrame& frame) {
    if (frame.operation == "Move") return kPan | kTilt | kZoom;
    if (frame.operation == "Pan") return kPan;
    if (frame.operation == "Tilt") return kTilt;
    if (frame.operation == "Zoom") return kZoom;
    if (frame.operation == "Iris") return kIris;
    if (frame.operation == "Focus") return kFocus;
    if (frame.operation != "StopAxes") return 0;
    const unsigned order[] = {kPan, kTilt, kZoom, kIris, kFocus};
    unsigned axes = 0;
    for (size_t i = 0; i < frame.args.size() && i < 5; ++i)
        if (frame.args[i] != 0) axes |= order[i];
    return axes;
}

}  // namespace

MessageClass ClassifyFrames(const std::vector<vorna::DecodedFrame>& frames) {
    if (frames.empty()) return MessageClass{};
    bool allSetMotion = true;
    bool axesKnown = true;
    unsigned axes = 0;
    for (const vorna::DecodedFrame& frame : frames) {
        if (frame.kind == vorna::FrameKind::kUnknown || frame.address != frames.front().address) return MessageClass{};
        allSetMotion = allSetMotion && SetsMotion(frame.kind);
        axesKnown = axesKnown && AxesOf(frame) != 0;
        axes |= AxesOf(frame);
    }
    if (!allSetMotion) return MessageClass{frames.front().address, MessageKind::kOther};
    const bool stops = frames.back().kind == vorna::FrameKind::kStop;
    return MessageClass{frames.front().address, stops ? MessageKind::kStop : MessageKind::kMotion, axesKnown ? axes : 0};
}

MessageClassifier ClassifierFor(const std::string& protocol) {
    return [protocol](const std::string& bytes) { return ClassifyFrames(vorna::DecodeMessage(protocol, bytes)); };
}

}  // namespace vorna_host
