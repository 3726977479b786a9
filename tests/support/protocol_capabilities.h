// The answers a protocol object gives about itself, as the configuration
// publishes them to the host, gathered in one comparable record.
#pragma once

#include <ostream>
#include <tuple>

#include "protocols/protocol.h"

namespace vorna_test {

struct Capabilities {
    int presets;
    int minAddress;
    int maxAddress;
    bool shouldRepeat;
    int goToPresetRepeatCount;  // GetRepeatCount for opcode 60
    int menuType;
    bool menuMode;
    int delay;
    int patternType;
    int interval;
    bool autoFocus;
    bool autoIris;
    bool flip;
    bool applePeel;
    bool arbCmd;  // RawCommand(1, 1) is not empty

    auto Fields() const {
        return std::tie(presets, minAddress, maxAddress, shouldRepeat, goToPresetRepeatCount, menuType, menuMode,
                        delay, patternType, interval, autoFocus, autoIris, flip, applePeel, arbCmd);
    }
    bool operator==(const Capabilities& other) const { return Fields() == other.Fields(); }
};

inline Capabilities CapabilitiesOf(vorna::CProtocol& protocol) {
    return {protocol.GetPresetCount(), protocol.GetMinAddress(),   protocol.GetMaxAddress(),
            protocol.ShouldRepeat(0, 0), protocol.GetRepeatCount(60), protocol.GetMenuType(),
            protocol.HasMenuMode(),      protocol.GetDelay(),         protocol.GetPatternType(),
            protocol.GetCommandInterval(), protocol.CanAutoFocus(),   protocol.CanAutoIris(),
            protocol.CanFlip(),          protocol.CanApplePeel(),     !protocol.RawCommand(1, 1).empty()};
}

inline void PrintTo(const Capabilities& c, std::ostream* out) {
    *out << "{presets " << c.presets << ", addresses " << c.minAddress << ".." << c.maxAddress << ", repeat "
         << c.shouldRepeat << ", go-to-preset count " << c.goToPresetRepeatCount << ", menu " << c.menuType
         << ", menu mode " << c.menuMode << ", delay " << c.delay << ", pattern " << c.patternType
         << ", interval " << c.interval << ", auto focus " << c.autoFocus << ", auto iris " << c.autoIris
         << ", flip " << c.flip << ", apple peel " << c.applePeel << ", arb cmd " << c.arbCmd << "}";
}

}  // namespace vorna_test
