#include "monitor_identify.h"

#include <algorithm>
#include <memory>

#include "protocols/frame_decoder.h"
#include "vorna/ptz.h"

namespace vorna_host {

namespace {

struct Family {
    const char* protocol;
    std::vector<const char*> members;
    const char* label;
};

const std::vector<Family>& Families() {
    static const std::vector<Family> kFamilies = {
        {VORNA_PROTOCOL_PELCO_D, {VORNA_PROTOCOL_PELCO_D, VORNA_PROTOCOL_HSD_PELCO_D}, "Pelco-D (or HSD-Pelco-D)"},
        {VORNA_PROTOCOL_PELCO_P, {VORNA_PROTOCOL_PELCO_P}, "Pelco-P"},
        {VORNA_PROTOCOL_PANASONIC, {VORNA_PROTOCOL_PANASONIC}, "Panasonic"},
        {VORNA_PROTOCOL_AD_RS422, {VORNA_PROTOCOL_AD_RS422}, "AD-RS422"},
        {VORNA_PROTOCOL_BOSCH, {VORNA_PROTOCOL_BOSCH}, "Bosch"},
        {VORNA_PROTOCOL_GE_ASCII, {VORNA_PROTOCOL_GE_ASCII}, "GE-ASCII"},
        {VORNA_PROTOCOL_GE_IMPAC, {VORNA_PROTOCOL_GE_IMPAC}, "GE-Impac"},
        {VORNA_PROTOCOL_AD_M3200,
         {VORNA_PROTOCOL_AD_M3200, VORNA_PROTOCOL_AD_M3200_MULTI, VORNA_PROTOCOL_AD_MP48, VORNA_PROTOCOL_AD_MP48_MULTI},
         "AD MegaPower (AD-M3200, AD-MP48, with or without Multi)"},
    };
    return kFamilies;
}

std::string Percent(double share) { return std::to_string(static_cast<int>(share * 100 + 0.5)) + "%"; }

}  // namespace

const std::vector<std::string>& ProtocolFamilies() {
    static const std::vector<std::string> kNames = [] {
        std::vector<std::string> names;
        for (const Family& family : Families()) names.push_back(family.protocol);
        return names;
    }();
    return kNames;
}

std::string FamilyOf(const std::string& protocol) {
    for (const Family& family : Families()) {
        for (const char* member : family.members) {
            if (protocol == member) return family.protocol;
        }
    }
    return {};
}

std::string FamilyLabel(const std::string& family) {
    for (const Family& known : Families()) {
        if (family == known.protocol) return known.label;
    }
    return family;
}

size_t ValidBytes(const std::string& protocol, const std::string& bytes) {
    size_t valid = 0;
    for (const vorna::DecodedFrame& frame : vorna::DecodeMessage(protocol, bytes)) {
        if (frame.kind != vorna::FrameKind::kUnknown) valid += frame.bytes.size();
    }
    return valid;
}

std::vector<FamilyScore> ScoreSamples(const std::vector<LineSample>& samples,
                                      const std::vector<std::string>& families) {
    std::vector<FamilyScore> scores;
    for (const LineSample& sample : samples) {
        for (const std::string& family : families) {
            scores.push_back(FamilyScore{family, sample.baud, sample.bytes.size(), ValidBytes(family, sample.bytes)});
        }
    }
    std::stable_sort(scores.begin(), scores.end(), [](const FamilyScore& a, const FamilyScore& b) {
        if (a.Share() != b.Share()) return a.Share() > b.Share();
        return a.validBytes > b.validBytes;
    });
    return scores;
}

std::string DescribeSample(const std::vector<FamilyScore>& scores) {
    const FamilyScore& best = scores.front();
    std::string text = std::to_string(best.baud) + " baud: " + std::to_string(best.bytes) + " bytes";
    if (best.validBytes == 0) return text;
    return text + ", best " + FamilyLabel(best.protocol) + " " + Percent(best.Share());
}

std::string DescribeIdentification(const std::vector<FamilyScore>& scores) {
    if (scores.empty() || scores.front().bytes == 0) return "no traffic";
    const FamilyScore& best = scores.front();
    std::string text = FamilyLabel(best.protocol) + " at " + std::to_string(best.baud) +
                       " baud: " + Percent(best.Share()) + " of " + std::to_string(best.bytes) +
                       " bytes form valid frames";
    for (const FamilyScore& other : scores) {
        if (other.protocol == best.protocol) continue;
        return text + "; next best " + FamilyLabel(other.protocol) + " at " + std::to_string(other.baud) + " baud, " +
               Percent(other.Share());
    }
    return text;
}

}  // namespace vorna_host
