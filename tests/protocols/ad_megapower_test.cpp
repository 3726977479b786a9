#include "protocols/ad_megapower.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "support/frame_rows.h"

using namespace vorna;
using vorna_test::ExpectFrames;
using vorna_test::Notation;

namespace {

enum Model { kM3200, kMp48 };

using Build = std::function<Bytes(CAdMPBase&)>;

// The channel table as "<address><letter>" entries, least recently used first.
std::string Channels(const CAdMPBase& protocol) {
    std::string text;
    for (const AdChannel& entry : protocol.channels()) {
        if (!text.empty()) text += ' ';
        text += std::to_string(entry.address) + char('a' + entry.channel);
    }
    return text;
}

// A multi-mode object whose table was filled by selecting `history` in order
// with a refreshing command.
std::unique_ptr<CAdMPBase> WithHistory(Model model, const std::vector<uint32_t>& history) {
    std::unique_ptr<CAdMPBase> protocol;
    if (model == kM3200) protocol = std::make_unique<CAdM3200>(true);
    if (model == kMp48) protocol = std::make_unique<CAdMp48>(true);
    for (uint32_t address : history) protocol->Flip(address, 0);
    return protocol;
}

}  // namespace

TEST(AdMegaPower, WithoutMultiModeEveryCommandSelectsOnMonitor6ChannelA) {
    CAdM3200 m3200(false);
    ExpectFrames<CAdMPBase>(m3200, {
        {[](auto& p) { return p.Move(5, 40, 0, 0); }, "6Ma5#a5Ra"},
        {[](auto& p) { return p.Move(5, 40, -20, 0); }, "6Ma5#a6Ma5#a5Ra2Da"},
        {[](auto& p) { return p.Move(5, 60, 0, 0); }, "6Ma5#aRa"},
        {[](auto& p) { return p.Move(5, -55, 0, 0); }, "6Ma5#a6La"},
        {[](auto& p) { return p.Move(5, -56, 0, 0); }, "6Ma5#aLa"},
        {[](auto& p) { return p.Move(5, 0, 32, 0); }, "6Ma5#a4Ua"},
        {[](auto& p) { return p.Move(5, 0, 0, 2); }, "6Ma5#aTa"},
        {[](auto& p) { return p.Move(5, 8, 8, -1); }, "6Ma5#a6Ma5#a6Ma5#a1Ra1UaWa"},
        {[](auto& p) { return p.Move(5, 0, 0, 0); }, ""},
        {[](auto& p) { return p.Iris(5, 1); }, "6Ma5#aOa"},
        {[](auto& p) { return p.Iris(5, -1); }, "6Ma5#aCa"},
        {[](auto& p) { return p.Iris(5, 0); }, ""},
        {[](auto& p) { return p.Focus(5, 1); }, "6Ma5#aNa"},
        {[](auto& p) { return p.Focus(5, -1); }, "6Ma5#aFa"},
        {[](auto& p) { return p.Preset(3, 7, 0); }, "6Ma3#a7^a"},
        {[](auto& p) { return p.Pattern(3, 2, 0); }, "6Ma3#a122'a"},
        {[](auto& p) { return p.Pattern(3, 2, 1); }, "6Ma3#a120'a"},
        {[](auto& p) { return p.Pattern(3, 2, 2); }, "6Ma3#a130'a"},
        {[](auto& p) { return p.Pattern(3, 2, 3); }, "6Ma3#a22'a"},
        {[](auto& p) { return p.Pattern(3, INT_MAX, 3); }, "6Ma3#a-2147483629'a"},
        {[](auto& p) { return p.Pattern(3, 2, 4); }, ""},
        {[](auto& p) { return p.AutoIris(3, 0); }, "6Ma3#a69%a"},
        {[](auto& p) { return p.AutoFocus(3, 1); }, "6Ma3#a69%a"},
        {[](auto& p) { return p.Flip(3, 0); }, "6Ma3#a19%a"},
        {[](auto& p) { return p.ApplePeel(3, 0); }, "6Ma3#a44%a"},
        {[](auto& p) { return p.PassThrough(3, "6Ma3#a22'a"); }, "6Ma3#a22'a"},
        {[](auto& p) { return p.PassThrough(5, "6Ma5#a6Ma5#a5Ra2Da"); }, "6Ma5#a6Ma5#a5Ra2Da"},
        {[](auto& p) { return p.PassThrough(3, "12Ra"); }, "6Ma3#a12Ra"},
        {[](auto& p) { return p.PassThrough(3, "123"); }, "6Ma3#a123"},
        {[](auto& p) { return p.PassThrough(3, "6Mab"); }, "6Ma3#a6Maa"},
        {[](auto& p) { return p.PassThrough(3, "6Ma3#a7#b1Ra"); }, "6Ma3#a7#b1Ra"},
    }, Notation::kText);
    CAdMp48 mp48(false);
    ExpectFrames<CAdMPBase>(mp48, {
        {[](auto& p) { return p.Pan(3, 0); }, "6Ma3#a0Ra"},
        {[](auto& p) { return p.Pan(3, -70); }, "6Ma3#a8La"},
        {[](auto& p) { return p.Pan(3, 63); }, "6Ma3#a7Ra"},
        {[](auto& p) { return p.Pan(3, 64); }, "6Ma3#a8Ra"},
        {[](auto& p) { return p.Tilt(3, 0); }, "6Ma3#a0Ua"},
        {[](auto& p) { return p.Tilt(3, -8); }, "6Ma3#a1Da"},
        {[](auto& p) { return p.Tilt(3, INT_MIN); }, "6Ma3#a8Da"},
        {[](auto& p) { return p.Zoom(3, 2); }, "6Ma3#a1Ta"},
        {[](auto& p) { return p.Zoom(3, -2); }, "6Ma3#a1Wa"},
        {[](auto& p) { return p.StopAxes(3, 0, 0, 2, 0, 0); }, "6Ma3#a0Ta"},
        {[](auto& p) { return p.StopAxes(3, 0, 0, -2, 0, 0); }, "6Ma3#a0Wa"},
        {[](auto& p) { return p.StopAxes(3, 0, 0, 0, 1, 0); }, "6Ma3#a0Oa"},
        {[](auto& p) { return p.StopAxes(3, 0, 0, 0, -1, 0); }, "6Ma3#a0Ca"},
        {[](auto& p) { return p.StopAxes(3, 0, 0, 0, 0, 1); }, "6Ma3#a0Na"},
        {[](auto& p) { return p.StopAxes(3, 0, 0, 0, 0, -1); }, "6Ma3#a0Fa"},
        {[](auto& p) { return p.StopAxes(3, 0, 0, -2, 1, 1); }, "6Ma3#a0Wa"},
        {[](auto& p) { return p.StopAxes(3, 0, 0, 0, -1, 1); }, "6Ma3#a0Ca"},
        {[](auto& p) { return p.StopAxes(3, 1, 0, 0, 0, 0) + p.StopAxes(3, 0, 1, 1, 0, 0); }, ""},
        {[](auto& p) { return p.StopAxes(3, 0, 0, 0, 0, 0); }, ""},
        {[](auto& p) { return p.Iris(3, 1); }, "6Ma3#a1Oa"},
        {[](auto& p) { return p.Iris(3, -1); }, "6Ma3#a1Ca"},
        {[](auto& p) { return p.Focus(3, 1); }, "6Ma3#a1Na"},
        {[](auto& p) { return p.Focus(3, -1); }, "6Ma3#a1Fa"},
        {[](auto& p) { return p.Preset(3, 7, 1); }, "6Ma3#a7\\a"},
        {[](auto& p) { return p.Preset(3, 7, 2); }, "6Ma3#a7a"},
    }, Notation::kText);
    EXPECT_EQ(Channels(m3200) + Channels(mp48), "");
}

// The pass-through rows, shared by both models, resend a kept command without
// its selection on the camera's present channel.
TEST(AdMegaPower, MultiModeKeepsUpToFourCamerasOnTheirChannels) {
    struct Case {
        Model model;
        std::vector<uint32_t> history;
        Build build;
        Bytes text;
        std::string channelsAfter;
    };
    const std::vector<Case> cases = {
        {kM3200, {}, [](auto& p) { return p.Move(5, 40, -20, 0); }, "1Ma5#a5Ra2Da", "5a"},
        {kM3200, {5}, [](auto& p) { return p.Move(5, 0, 8, 0); }, "1Ua", "5a"},
        {kM3200, {1, 2, 3}, [](auto& p) { return p.Move(4, 8, 0, 0); }, "4Md4#d1Rd", "1a 2b 3c 4d"},
        {kM3200, {1, 2, 3, 4}, [](auto& p) { return p.Move(9, 8, 0, 0); }, "1Ma9#a1Ra", "2b 3c 4d 9a"},
        {kM3200, {1, 2, 3, 4, 1}, [](auto& p) { return p.Move(9, 8, 0, 0); }, "2Mb9#b1Rb", "3c 4d 1a 9b"},
        {kM3200, {1, 2, 3}, [](auto& p) { return p.Flip(1, 0); }, "19%a", "2b 3c 1a"},
        {kM3200, {1, 2, 3}, [](auto& p) { return p.Preset(1, 4, 1); }, "4\\a", "1a 2b 3c"},
        {kM3200, {1}, [](auto& p) { return p.Preset(2, 4, 1); }, "2Mb2#b4\\b", "1a 2b"},
        {kM3200, {1, 2, 3, 4}, [](auto& p) { return p.Preset(9, 4, 1); }, "1Ma9#a4\\a", "9a 2b 3c 4d"},
        {kM3200, {1, 2, 3, 4, 1}, [](auto& p) { return p.Pattern(9, 2, 3); }, "2Mb9#b22'b", "9b 3c 4d 1a"},
        {kM3200, {1, 2, 3, 4}, [](auto& p) { return p.ApplePeel(9, 0); }, "1Ma9#a44%a", "9a 2b 3c 4d"},
        {kM3200, {1, 2, 3, 4}, [](auto& p) { return p.AutoFocus(9, 0); }, "1Ma9#a69%a", "2b 3c 4d 9a"},
        {kMp48, {1, 2}, [](auto& p) { return p.Pan(2, 0); }, "0Rb", "1a 2b"},
        {kMp48, {1, 2, 3, 4}, [](auto& p) { return p.Zoom(9, 0) + p.StopAxes(9, 5, 0, 0, 0, 0); }, "", "1a 2b 3c 4d"},
        {kMp48, {1, 2, 3, 4}, [](auto& p) { return p.StopAxes(2, 0, 0, 1, 0, 0); }, "0Tb", "1a 3c 4d 2b"},
        {kM3200, {1, 3}, [](auto& p) { return p.PassThrough(3, "6Ma3#a22'a"); }, "22'b", "1a 3b"},
        {kMp48, {1}, [](auto& p) { return p.PassThrough(3, "6Ma3#a22'a"); }, "2Mb3#b22'b", "1a 3b"},
        {kM3200, {1, 2}, [](auto& p) { return p.PassThrough(2, "1Rb"); }, "1Rb", "1a 2b"},
        {kMp48, {1, 2}, [](auto& p) { return p.PassThrough(2, "1Ra2Da"); }, "1Rb2Db", "1a 2b"},
        {kM3200, {1, 2}, [](auto& p) { return p.PassThrough(2, "1Ra2Db"); }, "1Ra2Db", "1a 2b"},
        {kMp48, {1, 2, 3}, [](auto& p) { return p.PassThrough(3, "a1b2d"); }, "c1c2c", "1a 2b 3c"},
        {kM3200, {1, 2, 3}, [](auto& p) { return p.PassThrough(1, "Ra"); }, "Ra", "2b 3c 1a"},
        {kMp48, {}, [](auto& p) { return p.PassThrough(3, "M3#a"); }, "", ""},
        {kM3200, {}, [](auto& p) { return p.PassThrough(3, "6Ma3#"); }, "", ""},
    };
    for (size_t row = 0; row < cases.size(); ++row) {
        SCOPED_TRACE("row " + std::to_string(row) + ": " + cases[row].text);
        auto protocol = WithHistory(cases[row].model, cases[row].history);
        EXPECT_EQ(cases[row].build(*protocol), cases[row].text);
        EXPECT_EQ(Channels(*protocol), cases[row].channelsAfter);
    }
}
