// Who may drive cameras through the control panel: on any address other than
// loopback every request carries the panel's token, since anyone on the
// site's network could otherwise pan a camera away from what it guards.
#pragma once

#include <string>

namespace vorna_host {

// True for 127.0.0.0/8, ::1 and "localhost".
bool IsLoopbackAddress(const std::string& address);

// Compares in a time that does not depend on where the two differ, so that
// timing the answers does not reveal the token a byte at a time.
bool SameToken(const std::string& presented, const std::string& token);

// 32 hexadecimal digits from the system's random source.
std::string NewPanelToken();

class PanelAccess {
public:
    // An empty `token` lets every request in.
    explicit PanelAccess(std::string token) : token_(std::move(token)) {}

    // The token for an address: the given one, a new one where the address is
    // not loopback, or none.
    static PanelAccess For(const std::string& address, const std::string& givenToken);

    const std::string& Token() const { return token_; }
    // Why a request that presented `presented` (empty: none) is refused, or
    // empty when it may go on.
    std::string Refusal(const std::string& presented) const;

private:
    std::string token_;
};

}  // namespace vorna_host
