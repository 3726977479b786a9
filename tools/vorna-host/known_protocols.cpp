#include "known_protocols.h"

namespace vorna_host {

namespace {

const KnownProtocol kProtocols[] = {
    {"Pelco-D", false},   {"HSD-Pelco-D", false},    {"Pelco-P", false},       {"Panasonic", true},
    {"AD-RS422", false},  {"Bosch", false},          {"GE-ASCII", true},       {"GE-Impac", false},
    {"AD-M3200", true},   {"AD-M3200 Multi", true},  {"AD-MP48", true},        {"AD-MP48 Multi", true},
};

}  // namespace

const KnownProtocol* FindKnownProtocol(const std::string& name) {
    for (const KnownProtocol& protocol : kProtocols)
        if (name == protocol.name) return &protocol;
    return nullptr;
}

std::string KnownProtocolNames() {
    std::string names;
    for (const KnownProtocol& protocol : kProtocols) {
        if (!names.empty()) names += ", ";
        names += protocol.name;
    }
    return names;
}

}  // namespace vorna_host
