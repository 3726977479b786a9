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
#include "support/protocol_capabilities.h"

using namespace vorna;

namespace {

// The words of the interface's capability table.
constexpr bool yes = true;
constexpr bool no = false;

struct Registration {
    const char* name;
    std::type_index type;  // the exact class behind the name
    bool multi;            // the switcher's multi flag; no for every other class
    vorna_test::Capabilities capabilities;
    const char* emptyOperations;
};

// name, class, multi,
// {presets, addresses min, max, repeat, repeat counts, menu, menu mode, delay, pattern, interval ms,
//  auto focus, auto iris, flip, apple peel, arbitrary command}, builders without a command
const std::vector<Registration> kRegistrations = {
    {"Pelco-D", typeid(CPelcoD), no, {32, 0, 255, no, "", 1, no, 0, 1, 250, yes, yes, yes, no, yes},
     "StopAxes Pan Tilt Zoom MenuNavigate ApplePeel"},
    {"HSD-Pelco-D", typeid(CHSDPelcoD), no, {32, 0, 255, no, "", 3, no, 0, 3, 250, yes, yes, yes, no, yes},
     "StopAxes Pan Tilt Zoom MenuNavigate ApplePeel"},
    {"Pelco-P", typeid(CPelcoP), no, {32, 1, 31, no, "", 1, no, 0, 0, 250, no, no, no, no, yes},
     "StopAxes Pan Tilt Zoom AutoIris AutoFocus MenuEnter MenuNavigate Flip ApplePeel Pattern"},
    {"Panasonic", typeid(CPanasonic), no, {64, 0, 96, yes, "", 3, yes, 0, 1, 250, yes, yes, yes, no, yes},
     "StopAxes Pan Tilt Zoom SetZoomSpeed MenuEnter ApplePeel"},
    {"AD-RS422", typeid(CSensormatic), no, {96, 1, 99, no, "60:3", 3, no, 0, 0x80003, 250, yes, yes, yes, yes, yes},
     "SetZoomSpeed MenuNavigate"},
    {"Bosch", typeid(CBosch), no, {99, 1, 16383, no, "", 0, no, 0, 0, 250, no, no, no, no, yes},
     "StopAxes Pan Tilt Zoom SetZoomSpeed AutoIris AutoFocus Menu MenuEnter MenuNavigate Flip ApplePeel Pattern"},
    {"GE-ASCII", typeid(CGEASCII), no, {64, 0, 511, no, "", 0, no, 0, 0, 250, yes, no, no, no, yes},
     "Pan Tilt Zoom SetZoomSpeed AutoIris Menu MenuEnter MenuNavigate Flip ApplePeel Pattern"},
    {"GE-Impac", typeid(CGEImpac), no, {32, 0, 253, no, "", 0, no, 0, 0, 250, no, no, no, no, no},
     "Pan Tilt Zoom SetZoomSpeed AutoIris AutoFocus RawCommand Menu MenuEnter MenuNavigate Flip ApplePeel Pattern"},
    {"AD-M3200", typeid(CAdM3200), no, {96, 1, 10000, yes, "", 0, no, 0, 0x80003, 67, yes, yes, yes, yes, no},
     "StopAxes Pan Tilt Zoom SetZoomSpeed RawCommand Menu MenuEnter MenuNavigate"},
    {"AD-M3200 Multi", typeid(CAdM3200), yes, {96, 1, 10000, yes, "", 0, no, 0, 0x80003, 67, yes, yes, yes, yes, no},
     "StopAxes Pan Tilt Zoom SetZoomSpeed RawCommand Menu MenuEnter MenuNavigate"},
    {"AD-MP48", typeid(CAdMp48), no, {96, 1, 99, no, "", 0, no, 0, 0x80003, 250, yes, yes, yes, yes, no},
     "Move SetZoomSpeed RawCommand Menu MenuEnter MenuNavigate"},
    {"AD-MP48 Multi", typeid(CAdMp48), yes, {96, 1, 99, no, "", 0, no, 0, 0x80003, 250, yes, yes, yes, yes, no},
     "Move SetZoomSpeed RawCommand Menu MenuEnter MenuNavigate"},
};

}  // namespace

TEST(ProtocolTable, EachNameSelectsItsClassWithItsCapabilities) {
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
        EXPECT_EQ(vorna_test::CapabilitiesOf(*protocol), r.capabilities);
        EXPECT_TRUE(switcher == nullptr || switcher->channels().empty()) << "the probes build nothing";
        EXPECT_EQ(vorna_test::EmptyOperations(*protocol), r.emptyOperations);
        // The switchers resend a kept command on the camera's channel, all others as it is.
        if (switcher == nullptr) {
            EXPECT_EQ(protocol->PassThrough(1, kKept), kKept);
        }
    }
}
