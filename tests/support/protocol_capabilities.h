// The answers a protocol object gives about itself, as the configuration
// publishes them to the host, gathered in one comparable record; and which of
// its builders have no command.
#pragma once

#include <ostream>
#include <string>
#include <tuple>
#include <utility>

#include "protocols/protocol.h"

namespace vorna_test {

struct Capabilities {
    int presets;
    int minAddress;
    int maxAddress;
    bool shouldRepeat;
    std::string repeatCounts;  // "opcode:count" for each opcode whose GetRepeatCount is not 0
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
        return std::tie(presets, minAddress, maxAddress, shouldRepeat, repeatCounts, menuType, menuMode, delay,
                        patternType, interval, autoFocus, autoIris, flip, applePeel, arbCmd);
    }
    bool operator==(const Capabilities& other) const { return Fields() == other.Fields(); }
};

inline std::string RepeatCountsOf(const vorna::CProtocol& protocol) {
    constexpr int VORNA_OPCODE_MAX = 74;
    std::string counts;
    for (int opcode = 0; opcode < VORNA_OPCODE_MAX; ++opcode) {
        const int count = protocol.GetRepeatCount(opcode);
        if (count != 0) counts += (counts.empty() ? "" : " ") + std::to_string(opcode) + ':' + std::to_string(count);
    }
    return counts;
}

inline Capabilities CapabilitiesOf(vorna::CProtocol& protocol) {
    return {protocol.GetPresetCount(), protocol.GetMinAddress(),   protocol.GetMaxAddress(),
            protocol.ShouldRepeat(0, 0), RepeatCountsOf(protocol),   protocol.GetMenuType(),
            protocol.HasMenuMode(),      protocol.GetDelay(),         protocol.GetPatternType(),
            protocol.GetCommandInterval(), protocol.CanAutoFocus(),   protocol.CanAutoIris(),
            protocol.CanFlip(),          protocol.CanApplePeel(),     !protocol.RawCommand(1, 1).empty()};
}

inline void PrintTo(const Capabilities& c, std::ostream* out) {
    *out << "{presets " << c.presets << ", addresses " << c.minAddress << ".." << c.maxAddress << ", repeat "
         << c.shouldRepeat << ", repeat counts \"" << c.repeatCounts << "\", menu " << c.menuType << ", menu mode "
         << c.menuMode << ", delay " << c.delay << ", pattern " << c.patternType << ", interval " << c.interval
         << ", auto focus " << c.autoFocus << ", auto iris " << c.autoIris << ", flip " << c.flip
         << ", apple peel " << c.applePeel << ", arb cmd " << c.arbCmd << "}";
}

// The builders, in slot order, that give nothing when called for address 1
// with every other argument 1 (a stop of the focus alone, menu navigation by
// enter, running pattern 1). Every builder of the registered protocols that
// has a command at all has one for these calls, so the list names exactly the
// operations a protocol does not support.
inline std::string EmptyOperations(vorna::CProtocol& p) {
    const std::pair<const char*, vorna::Bytes> built[] = {
        {"StopAxes", p.StopAxes(1, 0, 0, 0, 0, 1)},
        {"Pan", p.Pan(1, 1)},
        {"Tilt", p.Tilt(1, 1)},
        {"Zoom", p.Zoom(1, 1)},
        {"Move", p.Move(1, 1, 1, 1)},
        {"Preset", p.Preset(1, 1, 1)},
        {"SetZoomSpeed", p.SetZoomSpeed(1, 1)},
        {"Iris", p.Iris(1, 1)},
        {"Focus", p.Focus(1, 1)},
        {"AutoIris", p.AutoIris(1, 1)},
        {"AutoFocus", p.AutoFocus(1, 1)},
        {"RawCommand", p.RawCommand(1, 1)},
        {"Menu", p.Menu(1, 1)},
        {"MenuEnter", p.MenuEnter(1, 1)},
        {"MenuNavigate", p.MenuNavigate(1, 0, 0, 1)},
        {"Flip", p.Flip(1, 1)},
        {"ApplePeel", p.ApplePeel(1, 1)},
        {"Pattern", p.Pattern(1, 1, 3)},
    };
    std::string names;
    for (const auto& [name, bytes] : built) {
        if (bytes.empty()) names += (names.empty() ? "" : " ") + std::string(name);
    }
    return names;
}

}  // namespace vorna_test
