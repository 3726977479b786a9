#include "protocols/protocol_table.h"

namespace vorna {

namespace {

template <typename Protocol, typename... Args>
void Register(ProtocolTable& table, const char* name, Args... args) {
    table[name] = std::make_unique<Protocol>(args...);
}

}  // namespace

void FillProtocolTable(ProtocolTable& table) {
    (void)table;
}

CProtocol* FindProtocol(const ProtocolTable& table, const std::string& name) {
    auto found = table.find(name);
    return found == table.end() ? nullptr : found->second.get();
}

}  // namespace vorna
