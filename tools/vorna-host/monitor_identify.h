// Which protocol and baud rate a line speaks, told from its traffic alone: the
// share of the bytes that the protocol's decoder reads as valid frames.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace vorna_host {

// What a line sampled at one baud rate gave.
struct LineSample {
    int baud;
    std::string bytes;
};

struct FamilyScore {
    std::string protocol;  // the family's first protocol name
    int baud = 0;
    size_t bytes = 0;       // bytes sampled
    size_t validBytes = 0;  // bytes inside valid frames
    double Share() const { return bytes == 0 ? 0.0 : static_cast<double>(validBytes) / bytes; }
};

// One protocol name per family of protocols that send identical frames
// (Pelco-D and HSD-Pelco-D; the four AD MegaPower names).
const std::vector<std::string>& ProtocolFamilies();
// The family's protocol for any protocol name ("HSD-Pelco-D" gives
// "Pelco-D"); empty for an unknown name.
std::string FamilyOf(const std::string& protocol);
// "Pelco-D (or HSD-Pelco-D)": the family as the monitor names it.
std::string FamilyLabel(const std::string& family);

// The bytes of `bytes` inside frames that `protocol` decodes as valid.
size_t ValidBytes(const std::string& protocol, const std::string& bytes);

// Every family in `families` scored on every sample, best first: the larger
// share, then more valid bytes.
std::vector<FamilyScore> ScoreSamples(const std::vector<LineSample>& samples, const std::vector<std::string>& families);

// The share from which a score counts as an identification: traffic read at
// a wrong rate can make up to about 60% of sum-checked frames by chance.
constexpr double kIdentifiedShare = 0.7;

// "9600 baud: 216 bytes, best Pelco-D (or HSD-Pelco-D) 78%"
std::string DescribeSample(const std::vector<FamilyScore>& scores);

// "Pelco-D (or HSD-Pelco-D) at 9600 baud: 97% of 512 bytes form valid frames;
// next best AD-RS422 at 9600 baud, 3%"
std::string DescribeIdentification(const std::vector<FamilyScore>& scores);

}  // namespace vorna_host
