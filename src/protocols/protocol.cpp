#include "protocols/protocol.h"

namespace vorna {

CProtocol::~CProtocol() = default;

int CProtocol::GetRepeatCount(int) const { return 0; }
int CProtocol::GetMenuType() const { return 0; }
bool CProtocol::HasMenuMode() const { return false; }
int CProtocol::GetDelay() const { return 0; }
int CProtocol::GetPatternType() const { return 0; }

bool CProtocol::CanAutoFocus() { return !AutoFocus(1, 1).empty(); }
bool CProtocol::CanAutoIris() { return !AutoIris(1, 1).empty(); }
bool CProtocol::CanFlip() { return !Flip(1, 1).empty(); }
bool CProtocol::CanApplePeel() { return !ApplePeel(1, 1).empty(); }

int CProtocol::GetCommandInterval() const { return 250; }

Bytes CProtocol::PassThrough(uint32_t, const Bytes& text) { return text; }

}  // namespace vorna
