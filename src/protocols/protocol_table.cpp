#include "protocols/protocol_table.h"

#include "protocols/ad_megapower.h"
#include "protocols/bosch.h"
#include "protocols/ge_ascii.h"
#include "protocols/ge_impac.h"
#include "protocols/panasonic.h"
#include "protocols/pelco_d.h"
#include "protocols/pelco_p.h"
#include "protocols/sensormatic.h"
#include "vorna/ptz.h"

namespace vorna {

namespace {

template <typename Protocol, typename... Args>
void Register(ProtocolTable& table, const char* name, Args... args) {
    table[name] = std::make_unique<Protocol>(args...);
}

}  // namespace

void FillProtocolTable(ProtocolTable& table) {
    Register<CPelcoD>(table, VORNA_PROTOCOL_PELCO_D);
    Register<CPelcoP>(table, VORNA_PROTOCOL_PELCO_P);
    Register<CPanasonic>(table, VORNA_PROTOCOL_PANASONIC);
    Register<CBosch>(table, VORNA_PROTOCOL_BOSCH);
    Register<CGEASCII>(table, VORNA_PROTOCOL_GE_ASCII);
    Register<CGEImpac>(table, VORNA_PROTOCOL_GE_IMPAC);
    Register<CSensormatic>(table, VORNA_PROTOCOL_AD_RS422);
    Register<CHSDPelcoD>(table, VORNA_PROTOCOL_HSD_PELCO_D);
    Register<CAdM3200>(table, VORNA_PROTOCOL_AD_M3200, false);
    Register<CAdM3200>(table, VORNA_PROTOCOL_AD_M3200_MULTI, true);
    Register<CAdMp48>(table, VORNA_PROTOCOL_AD_MP48, false);
    Register<CAdMp48>(table, VORNA_PROTOCOL_AD_MP48_MULTI, true);
}

CProtocol* FindProtocol(const ProtocolTable& table, const std::string& name) {
    auto found = table.find(name);
    return found == table.end() ? nullptr : found->second.get();
}

}  // namespace vorna
