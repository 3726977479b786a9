#include "protocols/protocol_table.h"

#include "protocols/ad_megapower.h"

namespace vorna {

namespace {

template <typename Protocol, typename... Args>
void Register(ProtocolTable& table, const char* name, Args... args) {
    table[name] = std::make_unique<Protocol>(args...);
}

}  // namespace

void FillProtocolTable(ProtocolTable& table) {
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
