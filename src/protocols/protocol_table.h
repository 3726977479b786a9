// The protocol table: one shared object per protocol name, ordered byte-wise
// by name (the order in which the configuration publishes capabilities).
#pragma once

#include <map>
#include <memory>
#include <string>

#include "protocols/protocol.h"

namespace vorna {

using ProtocolTable = std::map<std::string, std::unique_ptr<CProtocol>>;

// Creates one object per known protocol name; a name registered again
// replaces the earlier object.
void FillProtocolTable(ProtocolTable& table);

// The object registered under exactly this name, or null.
CProtocol* FindProtocol(const ProtocolTable& table, const std::string& name);

}  // namespace vorna
