#include "panel_access.h"

#include <cstdio>
#include <random>

namespace vorna_host {

bool IsLoopbackAddress(const std::string& address) {
    return address == "localhost" || address == "::1" || address.compare(0, 4, "127.") == 0;
}

bool SameToken(const std::string& presented, const std::string& token) {
    unsigned difference = presented.size() == token.size() ? 0 : 1;
    for (size_t i = 0; i < presented.size(); ++i) {
        const unsigned char expected = token.empty() ? 0 : static_cast<unsigned char>(token[i % token.size()]);
        difference |= static_cast<unsigned char>(presented[i]) ^ expected;
    }
    return difference == 0 && !token.empty();
}

std::string NewPanelToken() {
    std::random_device source;
    std::string token;
    for (int i = 0; i < 4; ++i) {
        char digits[9];
        std::snprintf(digits, sizeof digits, "%08x", static_cast<unsigned>(source()));
        token += digits;
    }
    return token;
}

PanelAccess PanelAccess::For(const std::string& address, const std::string& givenToken) {
    if (!givenToken.empty()) return PanelAccess(givenToken);
    return PanelAccess(IsLoopbackAddress(address) ? std::string() : NewPanelToken());
}

std::string PanelAccess::Refusal(const std::string& presented) const {
    if (token_.empty()) return std::string();
    if (presented.empty()) return "this panel needs its token (the one vorna-host printed at start)";
    return SameToken(presented, token_) ? std::string() : "wrong token";
}

}  // namespace vorna_host
