// The protocol names the module registers, as the host knows them: enough to
// refuse a misspelt --line before anything is sent, and to know which lines
// carry text frames worth printing as text.
#pragma once

#include <string>

namespace vorna_host {

struct KnownProtocol {
    const char* name;
    bool textFrames;  // frames are ASCII commands (with at most framing bytes)
    // Frames depend on the ones before them on the line (a switcher port that
    // selects a camera once and then sends it commands): their order must stay.
    bool keepsLineOrder;
};

// The protocol with exactly this name (case and blanks count), or null.
const KnownProtocol* FindKnownProtocol(const std::string& name);

// "Pelco-D, HSD-Pelco-D, ..." for error messages and help.
std::string KnownProtocolNames();

}  // namespace vorna_host
