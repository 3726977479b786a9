#include "protocols/decode_stream.h"

namespace vorna {

namespace {

const char kBadFraming[] = "bad framing";
const char kTruncated[] = "truncated";

const uint8_t* Bytes(const std::string& text) { return reinterpret_cast<const uint8_t*>(text.data()); }

}  // namespace

FrameDecoder::~FrameDecoder() = default;

std::string HexByte(unsigned value) {
    static const char kDigits[] = "0123456789ABCDEF";
    return {'0', 'x', kDigits[(value >> 4) & 0xF], kDigits[value & 0xF]};
}

std::string BadChecksum(unsigned found, unsigned expected) {
    return "bad checksum " + HexByte(found) + ", expected " + HexByte(expected);
}

StreamDecoder::StreamDecoder(std::string protocol, std::unique_ptr<FrameReader> reader)
    : protocol_(std::move(protocol)), reader_(std::move(reader)) {}

std::vector<DecodedFrame> StreamDecoder::Feed(const char* data, size_t size) {
    pending_.append(data, size);
    std::vector<DecodedFrame> out;
    Scan(false, out);
    return out;
}

std::vector<DecodedFrame> StreamDecoder::Flush() {
    std::vector<DecodedFrame> out;
    Scan(true, out);
    EmitGarbage(out);
    return out;
}

// A run of bytes that starts no frame is reported once, as one unknown
// frame, when the next frame begins.
void StreamDecoder::Scan(bool atEnd, std::vector<DecodedFrame>& out) {
    const uint8_t* bytes = Bytes(pending_);
    const size_t size = pending_.size();
    size_t at = 0;
    while (at < size) {
        FrameSpan span = reader_->Measure(bytes + at, size - at);
        if (span.kind == FrameSpan::kNoStart) {
            garbage_ += pending_[at++];
            continue;
        }
        if (span.kind == FrameSpan::kNeedMore) {
            if (!atEnd) break;
            EmitGarbage(out);
            EmitUnknown(pending_.substr(at), kTruncated, out);
            at = size;
            continue;
        }
        if (span.kind == FrameSpan::kInvalid) {
            const size_t next = NextStart(at, span.length, atEnd);
            if (next < span.length) {
                garbage_.append(pending_, at, next);
                at += next;
                continue;
            }
            EmitGarbage(out);
            EmitUnknown(pending_.substr(at, span.length), std::move(span.error), out);
        } else {
            EmitGarbage(out);
            Emit(bytes + at, span.length, out);
        }
        at += span.length;
    }
    pending_.erase(0, at);
}

size_t StreamDecoder::NextStart(size_t at, size_t length, bool atEnd) const {
    const uint8_t* bytes = Bytes(pending_) + at;
    const size_t size = pending_.size() - at;
    for (size_t start = 1; start < length; ++start) {
        const FrameSpan::Kind kind = reader_->Measure(bytes + start, size - start).kind;
        if (kind == FrameSpan::kValid || (kind == FrameSpan::kNeedMore && !atEnd)) return start;
    }
    return length;
}

void StreamDecoder::Emit(const uint8_t* data, size_t size, std::vector<DecodedFrame>& out) {
    out.emplace_back();
    DecodedFrame& frame = out.back();
    frame.protocol = protocol_;
    frame.bytes.assign(reinterpret_cast<const char*>(data), size);
    reader_->Decode(data, size, frame);
}

void StreamDecoder::EmitUnknown(std::string bytes, std::string error, std::vector<DecodedFrame>& out) const {
    out.emplace_back();
    DecodedFrame& frame = out.back();
    frame.protocol = protocol_;
    frame.bytes = std::move(bytes);
    frame.error = std::move(error);
    frame.meaning = frame.error;
}

void StreamDecoder::EmitGarbage(std::vector<DecodedFrame>& out) {
    if (garbage_.empty()) return;
    EmitUnknown(std::move(garbage_), kBadFraming, out);
    garbage_.clear();
}

}  // namespace vorna
