#include "protocols/protocol_table.h"

#include "protocols/ad_megapower.h"
#include "protocols/bosch.h"
#include "protocols/ge_ascii.h"
#include "protocols/ge_impac.h"
#include "protocols/panasonic.h"
#include "protocols/pelco_d.h"
#include "protocols/pelco_p.h"
#include "protocols/sensormatic.h"

namespace vorna {

namespace {

template <typename Protocol, typename... Args>
void Register(ProtocolTable& table, const char* name, Args... args) {
    table[name] = std::make_unique<Protocol>(args...);
}

}  // namespace

void FillProtocolTable(ProtocolTable& table) {
    Register<CPelcoD>(table, "Pelco-D");
    Register<CPelcoP>(table, "Pelco-P");
    Register<CPanasonic>(table, "Panasonic");
    Register<CBosch>(table, "Bosch");
    Register<CGEASCII>(table, "GE-ASCII");
    Register<CGEImpac>(table, "GE-Impac");
    Register<CSensormatic>(table, "AD-RS422");
    Register<CHSDPelcoD>(table, "HSD-Pelco-D");
    Register<CAdM3200>(table, "AD-M3200", false);
    Register<CAdM3200>(table, "AD-M3200 Multi", true);
    Register<CAdMp48>(table, "AD-MP48", false);
    Register<CAdMp48>(table, "AD-MP48 Multi", true);
}

CProtocol* FindProtocol(const ProtocolTable& table, const std::string& name) {
    auto found = table.find(name);
    return found == table.end() ? nullptr : found->second.get();
}

}  // namespace vorna
