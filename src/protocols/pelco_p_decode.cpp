#include "protocols/decode_families.h"
#include "protocols/pelco_decode.h"
#include "protocols/pelco_p_wire.h"

namespace vorna {

namespace {

using namespace pelco_p;

class PelcoPReader : public FrameReader {
public:
    FrameSpan Measure(const uint8_t* data, size_t size) const override {
        if (data[0] != kStart) return FrameSpan::NoStart();
        if (size < kFrameSize) return FrameSpan::NeedMore();
        if (data[kEndAt] != kEnd) return FrameSpan::Invalid(kFrameSize, "bad framing");
        const uint8_t expected = Checksum(data);
        if (data[kChecksumAt] != expected)
            return FrameSpan::Invalid(kFrameSize, BadChecksum(data[kChecksumAt], expected));
        return FrameSpan::Valid(kFrameSize);
    }

    // Address 1 goes on the wire as 0.
    void Decode(const uint8_t* data, size_t, DecodedFrame& frame) override {
        frame.address = (data[kAddressAt] + 1) & 0xFF;
        const uint8_t data1 = data[kData1At];
        const uint8_t data2 = data[kData2At];
        const uint8_t data3 = data[kData3At];
        const uint8_t data4 = data[kData4At];
        // Data 2 is odd for the numbered commands, even for motion.
        const bool decoded = (data2 & 1) != 0
                                 ? data1 == 0 && data3 == 0 && pelco::DecodePresetCommand(data2, data4, true, frame)
                                 : DecodeMotion(data1, data2, data3, data4, frame);
        if (!decoded) pelco::DecodeRaw(pelco::ReadCommand(data + kData1At), frame);
    }

private:
    static bool DecodeMotion(uint8_t lens, uint8_t bits, uint8_t panSpeed, uint8_t tiltSpeed, DecodedFrame& frame) {
        if (lens == 0) return pelco::DecodeMove(bits, panSpeed, tiltSpeed, frame);
        if (bits != 0 || panSpeed != 0 || tiltSpeed != 0) return false;
        switch (lens) {
            case kIrisOpen: return pelco::Lens(frame, "Iris", 1, IrisWords(1));
            case kIrisClose: return pelco::Lens(frame, "Iris", -1, IrisWords(-1));
            case kFocusNear: return pelco::Lens(frame, "Focus", 1, FocusWords(1));
            case kFocusFar: return pelco::Lens(frame, "Focus", -1, FocusWords(-1));
            default: return false;
        }
    }
};

}  // namespace

std::unique_ptr<FrameReader> MakePelcoPReader() { return std::make_unique<PelcoPReader>(); }

}  // namespace vorna
