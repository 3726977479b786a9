#include "protocols/ad_megapower.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "protocols/protocol_table.h"

using namespace vorna;

namespace {

enum Model { kM3200, kMp48 };
enum Mode { kSingle = false, kMulti = true };

using Build = std::function<Bytes(CAdMPBase&)>;

std::unique_ptr<CAdMPBase> Make(Model model, Mode mode) {
    if (model == kM3200) return std::make_unique<CAdM3200>(mode);
    return std::make_unique<CAdMp48>(mode);
}

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
    auto protocol = Make(model, kMulti);
    for (uint32_t address : history) protocol->Flip(address, 0);
    return protocol;
}

}  // namespace

TEST(AdMegaPower, BuildersWithoutMultiModeSelectOnMonitor6ChannelA) {
    struct Case {
        Model model;
        Build build;
        Bytes text;
    };
    const std::vector<Case> cases = {
        {kM3200, [](CAdMPBase& p) { return p.Move(5, 40, 0, 0); }, "6Ma5#a5Ra"},
        {kM3200, [](CAdMPBase& p) { return p.Move(5, 40, -20, 0); }, "6Ma5#a6Ma5#a5Ra2Da"},
        {kM3200, [](CAdMPBase& p) { return p.Move(5, 60, 0, 0); }, "6Ma5#aRa"},
        {kM3200, [](CAdMPBase& p) { return p.Move(5, -55, 0, 0); }, "6Ma5#a6La"},
        {kM3200, [](CAdMPBase& p) { return p.Move(5, -56, 0, 0); }, "6Ma5#aLa"},
        {kM3200, [](CAdMPBase& p) { return p.Move(5, INT_MIN, 0, 0); }, "6Ma5#aLa"},
        {kM3200, [](CAdMPBase& p) { return p.Move(5, 1, 0, 0); }, "6Ma5#a0Ra"},
        {kM3200, [](CAdMPBase& p) { return p.Move(5, 0, 32, 0); }, "6Ma5#a4Ua"},
        {kM3200, [](CAdMPBase& p) { return p.Move(5, 0, 0, 2); }, "6Ma5#aTa"},
        {kM3200, [](CAdMPBase& p) { return p.Move(5, 0, 0, -2); }, "6Ma5#aWa"},
        {kM3200, [](CAdMPBase& p) { return p.Move(5, 8, 8, -1); }, "6Ma5#a6Ma5#a6Ma5#a1Ra1UaWa"},
        {kM3200, [](CAdMPBase& p) { return p.Move(5, 0, 0, 0); }, ""},
        {kM3200, [](CAdMPBase& p) { return p.StopAxes(5, 32, 0, 0, 0, 0); }, ""},
        {kM3200, [](CAdMPBase& p) { return p.StopAxes(5, 0, 0, 2, 0, 0); }, ""},
        {kM3200, [](CAdMPBase& p) { return p.Pan(5, 32); }, ""},
        {kM3200, [](CAdMPBase& p) { return p.Tilt(5, 32); }, ""},
        {kM3200, [](CAdMPBase& p) { return p.Zoom(5, 2); }, ""},
        {kM3200, [](CAdMPBase& p) { return p.Iris(5, 1); }, "6Ma5#aOa"},
        {kM3200, [](CAdMPBase& p) { return p.Iris(5, -1); }, "6Ma5#aCa"},
        {kM3200, [](CAdMPBase& p) { return p.Iris(5, 0); }, ""},
        {kM3200, [](CAdMPBase& p) { return p.Focus(5, 1); }, "6Ma5#aNa"},
        {kM3200, [](CAdMPBase& p) { return p.Focus(5, -1); }, "6Ma5#aFa"},
        {kM3200, [](CAdMPBase& p) { return p.Focus(5, 0); }, ""},
        {kM3200, [](CAdMPBase& p) { return p.Preset(3, 7, 0); }, "6Ma3#a7^a"},
        {kM3200, [](CAdMPBase& p) { return p.Preset(3, 7, 1); }, "6Ma3#a7\\a"},
        {kM3200, [](CAdMPBase& p) { return p.Preset(3, 7, 2); }, "6Ma3#a7a"},
        {kM3200, [](CAdMPBase& p) { return p.Preset(3, 7, 9); }, "6Ma3#a7a"},
        {kM3200, [](CAdMPBase& p) { return p.Preset(10000, 96, 1); }, "6Ma10000#a96\\a"},
        {kM3200, [](CAdMPBase& p) { return p.Pattern(3, 2, 0); }, "6Ma3#a122'a"},
        {kM3200, [](CAdMPBase& p) { return p.Pattern(3, 2, 1); }, "6Ma3#a120'a"},
        {kM3200, [](CAdMPBase& p) { return p.Pattern(3, 2, 2); }, "6Ma3#a130'a"},
        {kM3200, [](CAdMPBase& p) { return p.Pattern(3, 2, 3); }, "6Ma3#a22'a"},
        {kM3200, [](CAdMPBase& p) { return p.Pattern(3, INT_MAX, 3); }, "6Ma3#a-2147483629'a"},
        {kM3200, [](CAdMPBase& p) { return p.Pattern(3, 2, 4); }, ""},
        {kM3200, [](CAdMPBase& p) { return p.Pattern(3, 2, -1); }, ""},
        {kM3200, [](CAdMPBase& p) { return p.AutoIris(3, 0); }, "6Ma3#a69%a"},
        {kM3200, [](CAdMPBase& p) { return p.AutoFocus(3, 1); }, "6Ma3#a69%a"},
        {kM3200, [](CAdMPBase& p) { return p.Flip(3, 0); }, "6Ma3#a19%a"},
        {kM3200, [](CAdMPBase& p) { return p.ApplePeel(3, 0); }, "6Ma3#a44%a"},
        {kM3200, [](CAdMPBase& p) { return p.SetZoomSpeed(3, 2); }, ""},
        {kM3200, [](CAdMPBase& p) { return p.RawCommand(3, 1); }, ""},
        {kM3200, [](CAdMPBase& p) { return p.Menu(3, 1); }, ""},
        {kM3200, [](CAdMPBase& p) { return p.MenuEnter(3, 1); }, ""},
        {kM3200, [](CAdMPBase& p) { return p.MenuNavigate(3, 0, 0, 1); }, ""},
        {kMp48, [](CAdMPBase& p) { return p.Pan(3, 0); }, "6Ma3#a0Ra"},
        {kMp48, [](CAdMPBase& p) { return p.Pan(3, -70); }, "6Ma3#a8La"},
        {kMp48, [](CAdMPBase& p) { return p.Pan(3, 32); }, "6Ma3#a4Ra"},
        {kMp48, [](CAdMPBase& p) { return p.Pan(3, 63); }, "6Ma3#a7Ra"},
        {kMp48, [](CAdMPBase& p) { return p.Pan(3, 64); }, "6Ma3#a8Ra"},
        {kMp48, [](CAdMPBase& p) { return p.Pan(3, -63); }, "6Ma3#a7La"},
        {kMp48, [](CAdMPBase& p) { return p.Tilt(3, 0); }, "6Ma3#a0Ua"},
        {kMp48, [](CAdMPBase& p) { return p.Tilt(3, -8); }, "6Ma3#a1Da"},
        {kMp48, [](CAdMPBase& p) { return p.Tilt(3, INT_MIN); }, "6Ma3#a8Da"},
        {kMp48, [](CAdMPBase& p) { return p.Zoom(3, 2); }, "6Ma3#a1Ta"},
        {kMp48, [](CAdMPBase& p) { return p.Zoom(3, -2); }, "6Ma3#a1Wa"},
        {kMp48, [](CAdMPBase& p) { return p.Zoom(3, 0); }, ""},
        {kMp48, [](CAdMPBase& p) { return p.Move(3, 32, 32, 2); }, ""},
        {kMp48, [](CAdMPBase& p) { return p.StopAxes(3, 0, 0, 2, 0, 0); }, "6Ma3#a0Ta"},
        {kMp48, [](CAdMPBase& p) { return p.StopAxes(3, 0, 0, -2, 0, 0); }, "6Ma3#a0Wa"},
        {kMp48, [](CAdMPBase& p) { return p.StopAxes(3, 0, 0, 0, 1, 0); }, "6Ma3#a0Oa"},
        {kMp48, [](CAdMPBase& p) { return p.StopAxes(3, 0, 0, 0, -1, 0); }, "6Ma3#a0Ca"},
        {kMp48, [](CAdMPBase& p) { return p.StopAxes(3, 0, 0, 0, 0, 1); }, "6Ma3#a0Na"},
        {kMp48, [](CAdMPBase& p) { return p.StopAxes(3, 0, 0, 0, 0, -1); }, "6Ma3#a0Fa"},
        {kMp48, [](CAdMPBase& p) { return p.StopAxes(3, 0, 0, -2, 1, 1); }, "6Ma3#a0Wa"},
        {kMp48, [](CAdMPBase& p) { return p.StopAxes(3, 0, 0, 0, -1, 1); }, "6Ma3#a0Ca"},
        {kMp48, [](CAdMPBase& p) { return p.StopAxes(3, 32, 0, 0, 0, 0); }, ""},
        {kMp48, [](CAdMPBase& p) { return p.StopAxes(3, 0, 5, 2, 0, 0); }, ""},
        {kMp48, [](CAdMPBase& p) { return p.StopAxes(3, 0, 0, 0, 0, 0); }, ""},
        {kMp48, [](CAdMPBase& p) { return p.Iris(3, 1); }, "6Ma3#a1Oa"},
        {kMp48, [](CAdMPBase& p) { return p.Iris(3, -1); }, "6Ma3#a1Ca"},
        {kMp48, [](CAdMPBase& p) { return p.Iris(3, 0); }, ""},
        {kMp48, [](CAdMPBase& p) { return p.Focus(3, 1); }, "6Ma3#a1Na"},
        {kMp48, [](CAdMPBase& p) { return p.Focus(3, -1); }, "6Ma3#a1Fa"},
        {kMp48, [](CAdMPBase& p) { return p.Focus(3, 0); }, ""},
        {kMp48, [](CAdMPBase& p) { return p.Preset(3, 7, 1); }, "6Ma3#a7\\a"},
        {kMp48, [](CAdMPBase& p) { return p.Preset(3, 7, 2); }, "6Ma3#a7a"},
        {kMp48, [](CAdMPBase& p) { return p.Preset(3, 7, 0); }, "6Ma3#a7^a"},
        {kMp48, [](CAdMPBase& p) { return p.Pattern(3, 2, 0); }, "6Ma3#a122'a"},
        {kMp48, [](CAdMPBase& p) { return p.Pattern(3, 2, 3); }, "6Ma3#a22'a"},
        {kMp48, [](CAdMPBase& p) { return p.Pattern(3, 2, 5); }, ""},
        {kMp48, [](CAdMPBase& p) { return p.AutoIris(3, 1); }, "6Ma3#a69%a"},
        {kMp48, [](CAdMPBase& p) { return p.AutoFocus(3, 0); }, "6Ma3#a69%a"},
        {kMp48, [](CAdMPBase& p) { return p.Flip(3, 0); }, "6Ma3#a19%a"},
        {kMp48, [](CAdMPBase& p) { return p.ApplePeel(3, 0); }, "6Ma3#a44%a"},
        {kMp48, [](CAdMPBase& p) { return p.SetZoomSpeed(3, 2); }, ""},
        {kMp48, [](CAdMPBase& p) { return p.RawCommand(3, 1); }, ""},
        {kMp48, [](CAdMPBase& p) { return p.Menu(3, 0); }, ""},
        {kMp48, [](CAdMPBase& p) { return p.MenuEnter(3, 1); }, ""},
        {kMp48, [](CAdMPBase& p) { return p.MenuNavigate(3, 1, 0, 0); }, ""},
    };
    for (size_t row = 0; row < cases.size(); ++row) {
        SCOPED_TRACE("row " + std::to_string(row) + ": " + cases[row].text);
        auto protocol = Make(cases[row].model, kSingle);
        EXPECT_EQ(cases[row].build(*protocol), cases[row].text);
        EXPECT_EQ(cases[row].build(*protocol), cases[row].text);
        EXPECT_EQ(Channels(*protocol), "");
    }
}

TEST(AdMegaPower, MultiModeKeepsUpToFourCamerasOnTheirChannels) {
    struct Case {
        Model model;
        std::vector<uint32_t> history;
        Build build;
        Bytes text;
        std::string channelsAfter;
    };
    const std::vector<Case> cases = {
        {kM3200, {}, [](CAdMPBase& p) { return p.Move(5, 40, -20, 0); }, "1Ma5#a5Ra2Da", "5a"},
        {kM3200, {5}, [](CAdMPBase& p) { return p.Move(5, 0, 8, 0); }, "1Ua", "5a"},
        {kM3200, {1, 2, 3}, [](CAdMPBase& p) { return p.Move(4, 8, 0, 0); }, "4Md4#d1Rd", "1a 2b 3c 4d"},
        {kM3200, {1, 2, 3, 4}, [](CAdMPBase& p) { return p.Move(9, 8, 0, 0); }, "1Ma9#a1Ra", "2b 3c 4d 9a"},
        {kM3200, {1, 2, 3, 4}, [](CAdMPBase& p) { return p.Move(9, 40, -20, 0); }, "1Ma9#a5Ra2Da", "2b 3c 4d 9a"},
        {kM3200, {1, 2, 3, 4, 1}, [](CAdMPBase& p) { return p.Move(9, 8, 0, 0); }, "2Mb9#b1Rb", "3c 4d 1a 9b"},
        {kM3200, {1, 2, 3}, [](CAdMPBase& p) { return p.Flip(1, 0); }, "19%a", "2b 3c 1a"},
        {kM3200, {1, 2, 3}, [](CAdMPBase& p) { return p.Preset(1, 4, 1); }, "4\\a", "1a 2b 3c"},
        {kM3200, {1}, [](CAdMPBase& p) { return p.Preset(2, 4, 1); }, "2Mb2#b4\\b", "1a 2b"},
        {kM3200, {1, 2, 3, 4}, [](CAdMPBase& p) { return p.Preset(9, 4, 1); }, "1Ma9#a4\\a", "9a 2b 3c 4d"},
        {kM3200, {1, 2, 3, 4, 1}, [](CAdMPBase& p) { return p.Pattern(9, 2, 3); }, "2Mb9#b22'b", "9b 3c 4d 1a"},
        {kM3200, {1, 2, 3, 4}, [](CAdMPBase& p) { return p.ApplePeel(9, 0); }, "1Ma9#a44%a", "9a 2b 3c 4d"},
        {kM3200, {1, 2, 3, 4}, [](CAdMPBase& p) { return p.AutoFocus(9, 0); }, "1Ma9#a69%a", "2b 3c 4d 9a"},
        {kM3200, {1, 2, 3, 4}, [](CAdMPBase& p) { return p.Move(9, 0, 0, 0); }, "", "1a 2b 3c 4d"},
        {kM3200, {1, 2, 3, 4}, [](CAdMPBase& p) { return p.Pan(9, 5); }, "", "1a 2b 3c 4d"},
        {kM3200, {1, 2, 3, 4}, [](CAdMPBase& p) { return p.Iris(9, 0); }, "", "1a 2b 3c 4d"},
        {kM3200, {1, 2, 3, 4}, [](CAdMPBase& p) { return p.Pattern(9, 2, 7); }, "", "1a 2b 3c 4d"},
        {kMp48, {1, 2}, [](CAdMPBase& p) { return p.Pan(2, 0); }, "0Rb", "1a 2b"},
        {kMp48, {1, 2}, [](CAdMPBase& p) { return p.Pan(7, 32); }, "3Mc7#c4Rc", "1a 2b 7c"},
        {kMp48, {1, 2, 3, 4}, [](CAdMPBase& p) { return p.Zoom(9, 0); }, "", "1a 2b 3c 4d"},
        {kMp48, {1, 2, 3, 4}, [](CAdMPBase& p) { return p.StopAxes(9, 5, 0, 0, 0, 0); }, "", "1a 2b 3c 4d"},
        {kMp48, {1, 2, 3, 4}, [](CAdMPBase& p) { return p.StopAxes(2, 0, 0, 1, 0, 0); }, "0Tb", "1a 3c 4d 2b"},
    };
    for (size_t row = 0; row < cases.size(); ++row) {
        SCOPED_TRACE("row " + std::to_string(row) + ": " + cases[row].text);
        auto protocol = WithHistory(cases[row].model, cases[row].history);
        EXPECT_EQ(cases[row].build(*protocol), cases[row].text);
        EXPECT_EQ(Channels(*protocol), cases[row].channelsAfter);
    }
}

TEST(AdMegaPower, PassThroughResendsKeptTextOnTheCamerasChannel) {
    struct Case {
        Mode mode;
        std::vector<uint32_t> history;
        uint32_t address;
        Bytes kept;
        Bytes text;
        std::string channelsAfter;
    };
    const std::vector<Case> cases = {
        {kMulti, {1, 3}, 3, "6Ma3#a22'a", "22'b", "1a 3b"},
        {kMulti, {1}, 3, "6Ma3#a22'a", "2Mb3#b22'b", "1a 3b"},
        {kSingle, {}, 3, "6Ma3#a22'a", "6Ma3#a22'a", ""},
        {kSingle, {}, 5, "6Ma5#a6Ma5#a5Ra2Da", "6Ma5#a6Ma5#a5Ra2Da", ""},
        {kMulti, {5}, 5, "1Ma5#a5Ra2Da", "5Ra2Da", "5a"},
        {kMulti, {1, 2}, 2, "1Rb", "1Rb", "1a 2b"},
        {kMulti, {1, 2}, 2, "1Ra2Da", "1Rb2Db", "1a 2b"},
        {kMulti, {1, 2}, 2, "1Ra2Db", "1Ra2Db", "1a 2b"},
        {kMulti, {1, 2, 3}, 3, "a1b2d", "c1c2c", "1a 2b 3c"},
        {kMulti, {1, 2, 3}, 1, "Ra", "Ra", "2b 3c 1a"},
        {kMulti, {1, 2, 3, 4}, 9, "1Ma1#a5Ra", "1Ma9#a5Ra", "2b 3c 4d 9a"},
        {kSingle, {}, 3, "12Ra", "6Ma3#a12Ra", ""},
        {kSingle, {}, 3, "123", "6Ma3#a123", ""},
        {kSingle, {}, 3, "6Mab", "6Ma3#a6Maa", ""},
        {kSingle, {}, 3, "6Ma3#a7#b1Ra", "6Ma3#a7#b1Ra", ""},
        {kMulti, {}, 3, "M3#a", "", ""},
        {kMulti, {}, 3, "6Ma3#a", "", ""},
        {kMulti, {}, 3, "6Ma3#", "", ""},
        {kMulti, {}, 3, "", "", ""},
    };
    for (Model model : {kM3200, kMp48}) {
        for (size_t row = 0; row < cases.size(); ++row) {
            const Case& c = cases[row];
            SCOPED_TRACE("model " + std::to_string(model) + " row " + std::to_string(row) + ": " + c.kept);
            auto protocol = c.mode == kMulti ? WithHistory(model, c.history) : Make(model, kSingle);
            EXPECT_EQ(protocol->PassThrough(c.address, c.kept), c.text);
            EXPECT_EQ(Channels(*protocol), c.channelsAfter);
        }
    }
}

TEST(AdMegaPower, ChannelsFillThenEvictTheLeastRecentlyUsed) {
    struct Step {
        Build build;
        Bytes text;
        std::string channelsAfter;
    };
    const std::vector<std::vector<Step>> sequences = {
        {
            {[](CAdMPBase& p) { return p.Move(1, 8, 0, 0); }, "1Ma1#a1Ra", "1a"},
            {[](CAdMPBase& p) { return p.Move(2, 8, 0, 0); }, "2Mb2#b1Rb", "1a 2b"},
            {[](CAdMPBase& p) { return p.Move(3, 8, 0, 0); }, "3Mc3#c1Rc", "1a 2b 3c"},
            {[](CAdMPBase& p) { return p.Move(4, 8, 0, 0); }, "4Md4#d1Rd", "1a 2b 3c 4d"},
            {[](CAdMPBase& p) { return p.Move(9, 8, 0, 0); }, "1Ma9#a1Ra", "2b 3c 4d 9a"},
        },
        {
            {[](CAdMPBase& p) { return p.Move(1, 8, 0, 0); }, "1Ma1#a1Ra", "1a"},
            {[](CAdMPBase& p) { return p.Move(2, 8, 0, 0); }, "2Mb2#b1Rb", "1a 2b"},
            {[](CAdMPBase& p) { return p.Preset(3, 5, 1); }, "3Mc3#c5\\c", "1a 2b 3c"},
            {[](CAdMPBase& p) { return p.Pattern(4, 1, 3); }, "4Md4#d21'd", "1a 2b 3c 4d"},
            {[](CAdMPBase& p) { return p.Move(1, 0, 8, 0); }, "1Ua", "2b 3c 4d 1a"},
            {[](CAdMPBase& p) { return p.Move(9, 0, 0, 2); }, "2Mb9#bTb", "3c 4d 1a 9b"},
            {[](CAdMPBase& p) { return p.Preset(7, 1, 0); }, "3Mc7#c1^c", "7c 4d 1a 9b"},
            {[](CAdMPBase& p) { return p.Preset(8, 1, 1); }, "3Mc8#c1\\c", "8c 4d 1a 9b"},
            {[](CAdMPBase& p) { return p.Move(3, 8, 0, 0); }, "3Mc3#c1Rc", "4d 1a 9b 3c"},
            {[](CAdMPBase& p) { return p.PassThrough(9, "2Mb9#bTb"); }, "Tb", "4d 1a 3c 9b"},
            {[](CAdMPBase& p) { return p.PassThrough(4, "1Ra"); }, "1Rd", "1a 3c 9b 4d"},
        },
    };
    for (size_t sequence = 0; sequence < sequences.size(); ++sequence) {
        CAdM3200 protocol(true);
        for (size_t step = 0; step < sequences[sequence].size(); ++step) {
            const Step& s = sequences[sequence][step];
            SCOPED_TRACE("sequence " + std::to_string(sequence) + " step " + std::to_string(step) + ": " + s.text);
            EXPECT_EQ(s.build(protocol), s.text);
            EXPECT_EQ(Channels(protocol), s.channelsAfter);
        }
    }
}

TEST(AdMegaPower, CapabilitiesOfTheFourRegisteredNames) {
    struct Case {
        const char* name;
        Model model;
        Mode mode;
        int maxAddress;
        bool repeat;
        int interval;
    };
    const std::vector<Case> cases = {
        {"AD-M3200", kM3200, kSingle, 10000, true, 67},
        {"AD-M3200 Multi", kM3200, kMulti, 10000, true, 67},
        {"AD-MP48", kMp48, kSingle, 99, false, 250},
        {"AD-MP48 Multi", kMp48, kMulti, 99, false, 250},
    };
    ProtocolTable table;
    FillProtocolTable(table);
    std::vector<CProtocol*> seen;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        auto* protocol = dynamic_cast<CAdMPBase*>(FindProtocol(table, c.name));
        ASSERT_NE(protocol, nullptr);
        EXPECT_EQ(dynamic_cast<CAdM3200*>(protocol) != nullptr, c.model == kM3200);
        EXPECT_EQ(protocol->multi(), c.mode == kMulti);
        for (CProtocol* other : seen) EXPECT_NE(protocol, other);
        seen.push_back(protocol);

        EXPECT_EQ(protocol->GetPresetCount(), 96);
        EXPECT_EQ(protocol->GetMinAddress(), 1);
        EXPECT_EQ(protocol->GetMaxAddress(), c.maxAddress);
        EXPECT_EQ(protocol->ShouldRepeat(0, 0), c.repeat);
        EXPECT_EQ(protocol->GetRepeatCount(60), 0);
        EXPECT_EQ(protocol->GetMenuType(), 0);
        EXPECT_FALSE(protocol->HasMenuMode());
        EXPECT_EQ(protocol->GetDelay(), 0);
        EXPECT_EQ(protocol->GetPatternType(), 524291);
        EXPECT_EQ(protocol->GetCommandInterval(), c.interval);
        EXPECT_TRUE(protocol->CanAutoFocus());
        EXPECT_TRUE(protocol->CanAutoIris());
        EXPECT_TRUE(protocol->CanFlip());
        EXPECT_TRUE(protocol->CanApplePeel());
        EXPECT_TRUE(protocol->RawCommand(1, 1).empty());
        EXPECT_EQ(Channels(*protocol), "") << "the probes build nothing";
    }
}
