// The part every family's decoder shares: cutting a byte stream into frames,
// keeping a frame split over several reads, and stepping over garbage.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "protocols/frame_decoder.h"

namespace vorna {

// What a family sees at the start of the unread bytes.
struct FrameSpan {
    enum Kind {
        kNoStart,   // no frame of this family starts here
        kNeedMore,  // a frame may start here; more bytes are needed to tell
        kValid,     // a whole valid frame of `length` bytes
        kInvalid,   // a whole frame of `length` bytes that fails its check (`error`)
    };
    Kind kind = kNoStart;
    size_t length = 0;
    std::string error;

    static FrameSpan NoStart() { return {}; }
    static FrameSpan NeedMore() { return {kNeedMore, 0, {}}; }
    static FrameSpan Valid(size_t length) { return {kValid, length, {}}; }
    static FrameSpan Invalid(size_t length, std::string error) { return {kInvalid, length, std::move(error)}; }
};

// One protocol family's frames: where a frame ends, and what a valid one
// means. `Decode` may keep per-line context (the AD selected cameras).
class FrameReader {
public:
    virtual ~FrameReader() = default;
    virtual FrameSpan Measure(const uint8_t* data, size_t size) const = 0;
    // Fills address, operation, args, kind and meaning of a frame Measure
    // found valid.
    virtual void Decode(const uint8_t* data, size_t size, DecodedFrame& frame) = 0;
};

class StreamDecoder final : public FrameDecoder {
public:
    StreamDecoder(std::string protocol, std::unique_ptr<FrameReader> reader);

    std::vector<DecodedFrame> Feed(const char* data, size_t size) override;
    std::vector<DecodedFrame> Flush() override;

private:
    void Scan(bool atEnd, std::vector<DecodedFrame>& out);
    // Where, inside an invalid frame at `at`, a valid one (or one still
    // arriving) starts; `length` when none does.
    size_t NextStart(size_t at, size_t length, bool atEnd) const;
    void Emit(const uint8_t* data, size_t size, std::vector<DecodedFrame>& out);
    void EmitUnknown(std::string bytes, std::string error, std::vector<DecodedFrame>& out) const;
    void EmitGarbage(std::vector<DecodedFrame>& out);

    const std::string protocol_;
    std::unique_ptr<FrameReader> reader_;
    std::string pending_;
    std::string garbage_;
};

// "0x2A": a byte as the error and meaning texts show it.
std::string HexByte(unsigned value);
// "bad checksum 0x24, expected 0x25"
std::string BadChecksum(unsigned found, unsigned expected);

}  // namespace vorna
