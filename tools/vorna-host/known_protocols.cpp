#include "known_protocols.h"

#include "vorna/ptz.h"

namespace vorna_host {

namespace {

const KnownProtocol kProtocols[] = {
    {VORNA_PROTOCOL_PELCO_D, false, false},       {VORNA_PROTOCOL_HSD_PELCO_D, false, false},
    {VORNA_PROTOCOL_PELCO_P, false, false},       {VORNA_PROTOCOL_PANASONIC, true, false},
    {VORNA_PROTOCOL_AD_RS422, false, false},      {VORNA_PROTOCOL_BOSCH, false, false},
    {VORNA_PROTOCOL_GE_ASCII, true, false},       {VORNA_PROTOCOL_GE_IMPAC, false, false},
    {VORNA_PROTOCOL_AD_M3200, true, true},        {VORNA_PROTOCOL_AD_M3200_MULTI, true, true},
    {VORNA_PROTOCOL_AD_MP48, true, true},         {VORNA_PROTOCOL_AD_MP48_MULTI, true, true},
};
static_assert(sizeof kProtocols / sizeof kProtocols[0] == VORNA_PROTOCOL_COUNT, "every protocol the module knows");

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
