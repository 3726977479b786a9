#include "protocols/protocol_table.h"

#include <gtest/gtest.h>

#include <string>
#include <typeindex>
#include <typeinfo>
#include <vector>

#include "protocols/ad_megapower.h"
#include "protocols/bosch.h"
#include "protocols/ge_ascii.h"
#include "protocols/ge_impac.h"
#include "protocols/panasonic.h"
#include "protocols/pelco_d.h"
#include "protocols/pelco_p.h"
#include "protocols/sensormatic.h"
#include "vorna/ptz.h"

using namespace vorna;

namespace {

// What a name gives that the configuration notice does not publish (the
// notice, pinned by the replay scripts, carries presets, addresses, menu,
// pattern, delay and the probes): the class behind the name, the switchers'
// multi flag, repetition, menu mode, the command interval, and the builders
// without a command.
struct Registration {
    const char* name;
    std::type_index type;
    bool multi;
    bool repeat;               // ShouldRepeat
    const char* repeatCounts;  // "opcode:count" where GetRepeatCount is not 0
    bool menuMode;
    int interval;
    const char* emptyOperations;
};

constexpr bool yes = true;
constexpr bool no = false;

const std::vector<Registration> kRegistrations = {
    {"Pelco-D", typeid(CPelcoD), no, no, "", no, 250, "StopAxes Pan Tilt Zoom MenuNavigate ApplePeel"},
    {"HSD-Pelco-D", typeid(CHSDPelcoD), no, no, "", no, 250, "StopAxes Pan Tilt Zoom MenuNavigate ApplePeel"},
    {"Pelco-P", typeid(CPelcoP), no, no, "", no, 250,
     "StopAxes Pan Tilt Zoom AutoIris AutoFocus MenuEnter MenuNavigate Flip ApplePeel Pattern"},
    {"Panasonic", typeid(CPanasonic), no, yes, "", yes, 250, "StopAxes Pan Tilt Zoom SetZoomSpeed MenuEnter ApplePeel"},
    {"AD-RS422", typeid(CSensormatic), no, no, "60:3", no, 250, "SetZoomSpeed MenuNavigate"},
    {"Bosch", typeid(CBosch), no, no, "", no, 250,
     "StopAxes Pan Tilt Zoom SetZoomSpeed AutoIris AutoFocus Menu MenuEnter MenuNavigate Flip ApplePeel Pattern"},
    {"GE-ASCII", typeid(CGEASCII), no, no, "", no, 250,
     "Pan Tilt Zoom SetZoomSpeed AutoIris Menu MenuEnter MenuNavigate Flip ApplePeel Pattern"},
    {"GE-Impac", typeid(CGEImpac), no, no, "", no, 250,
     "Pan Tilt Zoom SetZoomSpeed AutoIris AutoFocus RawCommand Menu MenuEnter MenuNavigate Flip ApplePeel Pattern"},
    {"AD-M3200", typeid(CAdM3200), no, yes, "", no, 67,
     "StopAxes Pan Tilt Zoom SetZoomSpeed RawCommand Menu MenuEnter MenuNavigate"},
    {"AD-M3200 Multi", typeid(CAdM3200), yes, yes, "", no, 67,
     "StopAxes Pan Tilt Zoom SetZoomSpeed RawCommand Menu MenuEnter MenuNavigate"},
    {"AD-MP48", typeid(CAdMp48), no, no, "", no, 250, "Move SetZoomSpeed RawCommand Menu MenuEnter MenuNavigate"},
    {"AD-MP48 Multi", typeid(CAdMp48), yes, no, "", no, 250, "Move SetZoomSpeed RawCommand Menu MenuEnter MenuNavigate"},
};

std::string RepeatCounts(const CProtocol& protocol) {
    std::string counts;
    for (int opcode = 0; opcode < VORNA_OPCODE_MAX; ++opcode)
        if (const int count = protocol.GetRepeatCount(opcode))
            counts += (counts.empty() ? "" : " ") + std::to_string(opcode) + ':' + std::to_string(count);
    return counts;
}

// The builders, in slot order, that give nothing when called for address 1
// with every other argument 1 (a stop of the focus alone, menu navigation by
// enter, running pattern 1): every builder that has a command at all has one
// for these calls.
std::string EmptyOperations(CProtocol& p) {
    const std::pair<const char*, Bytes> built[] = {
        {"StopAxes", p.StopAxes(1, 0, 0, 0, 0, 1)}, {"Pan", p.Pan(1, 1)}, {"Tilt", p.Tilt(1, 1)},
        {"Zoom", p.Zoom(1, 1)}, {"Move", p.Move(1, 1, 1, 1)}, {"Preset", p.Preset(1, 1, 1)},
        {"SetZoomSpeed", p.SetZoomSpeed(1, 1)}, {"Iris", p.Iris(1, 1)}, {"Focus", p.Focus(1, 1)},
        {"AutoIris", p.AutoIris(1, 1)}, {"AutoFocus", p.AutoFocus(1, 1)}, {"RawCommand", p.RawCommand(1, 1)},
        {"Menu", p.Menu(1, 1)}, {"MenuEnter", p.MenuEnter(1, 1)}, {"MenuNavigate", p.MenuNavigate(1, 0, 0, 1)},
        {"Flip", p.Flip(1, 1)}, {"ApplePeel", p.ApplePeel(1, 1)}, {"Pattern", p.Pattern(1, 1, 3)},
    };
    std::string names;
    for (const auto& [name, bytes] : built)
        if (bytes.empty()) names += (names.empty() ? "" : " ") + std::string(name);
    return names;
}

}  // namespace

TEST(ProtocolTable, EachNameSelectsItsClassWithWhatTheNoticeDoesNotShow) {
    ProtocolTable table;
    FillProtocolTable(table);
    EXPECT_EQ(table.size(), kRegistrations.size());
    const Bytes kKept("\xFF\x00\x01", 3);
    for (const Registration& r : kRegistrations) {
        SCOPED_TRACE(r.name);
        CProtocol* protocol = FindProtocol(table, r.name);
        ASSERT_NE(protocol, nullptr);
        EXPECT_EQ(std::type_index(typeid(*protocol)), r.type);
        const auto* switcher = dynamic_cast<CAdMPBase*>(protocol);
        EXPECT_EQ(switcher != nullptr && switcher->multi(), r.multi);
        EXPECT_EQ(protocol->ShouldRepeat(0, 0), r.repeat);
        EXPECT_EQ(RepeatCounts(*protocol), r.repeatCounts);
        EXPECT_EQ(protocol->HasMenuMode(), r.menuMode);
        EXPECT_EQ(protocol->GetCommandInterval(), r.interval);
        static_cast<void>(protocol->CanAutoFocus() | protocol->CanAutoIris() | protocol->CanFlip() |
                          protocol->CanApplePeel());
        EXPECT_TRUE(switcher == nullptr || switcher->channels().empty()) << "the probes leave no trace";
        EXPECT_EQ(EmptyOperations(*protocol), r.emptyOperations);
        // The switchers resend a kept command on the camera's channel, all others as it is.
        if (switcher == nullptr) {
            EXPECT_EQ(protocol->PassThrough(1, kKept), kKept);
        }
    }
}
