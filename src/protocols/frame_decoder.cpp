#include "protocols/frame_decoder.h"

#include <functional>
#include <map>

#include "protocols/decode_families.h"
#include "vorna/ptz.h"

namespace vorna {

namespace {

using ReaderFactory = std::function<std::unique_ptr<FrameReader>()>;

const std::map<std::string, ReaderFactory>& Readers() {
    static const std::map<std::string, ReaderFactory> readers = {
        {VORNA_PROTOCOL_PELCO_D, [] { return MakePelcoDReader(false); }},
        {VORNA_PROTOCOL_HSD_PELCO_D, [] { return MakePelcoDReader(true); }},
        {VORNA_PROTOCOL_PELCO_P, [] { return MakePelcoPReader(); }},
        {VORNA_PROTOCOL_AD_RS422, [] { return MakeSensormaticReader(); }},
        {VORNA_PROTOCOL_BOSCH, [] { return MakeBoschReader(); }},
        {VORNA_PROTOCOL_GE_IMPAC, [] { return MakeGEImpacReader(); }},
        {VORNA_PROTOCOL_GE_ASCII, [] { return MakeGEASCIIReader(); }},
        {VORNA_PROTOCOL_PANASONIC, [] { return MakePanasonicReader(); }},
        {VORNA_PROTOCOL_AD_M3200, [] { return MakeAdMegaPowerReader(false); }},
        {VORNA_PROTOCOL_AD_M3200_MULTI, [] { return MakeAdMegaPowerReader(false); }},
        {VORNA_PROTOCOL_AD_MP48, [] { return MakeAdMegaPowerReader(true); }},
        {VORNA_PROTOCOL_AD_MP48_MULTI, [] { return MakeAdMegaPowerReader(true); }},
    };
    return readers;
}

}  // namespace

std::unique_ptr<FrameDecoder> MakeFrameDecoder(const std::string& protocolName) {
    const auto found = Readers().find(protocolName);
    if (found == Readers().end()) return nullptr;
    return std::make_unique<StreamDecoder>(protocolName, found->second());
}

std::vector<DecodedFrame> DecodeMessage(const std::string& protocolName, const std::string& bytes) {
    const std::unique_ptr<FrameDecoder> decoder = MakeFrameDecoder(protocolName);
    if (!decoder) return {};
    std::vector<DecodedFrame> frames = decoder->Feed(bytes.data(), bytes.size());
    for (DecodedFrame& rest : decoder->Flush()) frames.push_back(std::move(rest));
    return frames;
}

}  // namespace vorna
