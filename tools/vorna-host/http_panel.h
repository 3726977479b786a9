// The control panel served over HTTP beside the console: one page for a phone,
// its JSON API, the live frame log as server-sent events, and the watchdog
// that stops a camera whose page went quiet.
#pragma once

#include <memory>
#include <string>

#include "frame_log.h"
#include "panel_access.h"
#include "panel_api.h"

namespace vorna_host {

class HttpPanel {
public:
    struct Settings {
        std::string address;
        int port = 0;  // 0: any free port
        PanelAccess access;
    };

    // Listens and serves on threads of its own; null with the reason in
    // `error` when the address cannot be bound.
    static std::unique_ptr<HttpPanel> Start(const Settings& settings, PanelApi& api, FrameLog& frames,
                                            std::function<void(const std::string&)> report, std::string& error);
    // Stops serving and the watchdog.
    ~HttpPanel();

    int Port() const;
    // The addresses to open the panel at, token included.
    std::vector<std::string> Addresses() const;

private:
    struct Running;
    explicit HttpPanel(std::unique_ptr<Running> running);
    std::unique_ptr<Running> running_;
};

}  // namespace vorna_host
