// A W3C WebDriver client for the panel's browser tests: starts chromedriver
// (in a process group of its own, with the headless Chromium it starts) and
// drives one session through its JSON wire protocol.
#pragma once

#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <httplib.h>

#include "tools/host_process.h"

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

namespace vorna_test {

inline int FreeLoopbackPort() {
    const int fd = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) != 0)
        throw std::runtime_error("no free port");
    close(fd);
    return ntohs(address.sin_port);
}

inline std::string DecodeBase64(const std::string& text) {
    static const std::string kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bytes;
    unsigned value = 0;
    int bits = 0;
    for (char c : text) {
        const size_t digit = kDigits.find(c);
        if (digit == std::string::npos) continue;
        value = (value << 6) | static_cast<unsigned>(digit);
        bits += 6;
        if (bits >= 8) {
            bits -= 8;
            bytes += static_cast<char>((value >> bits) & 0xFF);
        }
    }
    return bytes;
}

class WebDriver {
public:
    using Json = nlohmann::json;

    static constexpr const char* kChromium = "/usr/bin/chromium";
    static constexpr const char* kChromedriver = "/usr/bin/chromedriver";

    // Starts chromedriver and a headless Chromium of `width` x `height` with
    // its profile in `profileDir`.
    WebDriver(const std::string& profileDir, int width, int height)
        : port_(FreeLoopbackPort()), client_("127.0.0.1", port_) {
        client_.set_read_timeout(30);
        const std::string portArg = "--port=" + std::to_string(port_);
        pid_ = fork();
        if (pid_ == 0) {
            setpgid(0, 0);
            execl(kChromedriver, kChromedriver, portArg.c_str(), "--log-level=OFF", static_cast<char*>(nullptr));
            _exit(127);
        }
        setpgid(pid_, pid_);
        try {
            StartSession(profileDir, width, height);
        } catch (...) {
            Kill();
            throw;
        }
    }

    ~WebDriver() { Kill(); }

    // Ends chromedriver and the browser at once, as a phone that runs flat
    // leaves its page: no unload, no last request.
    void Kill() {
        if (pid_ <= 0) return;
        kill(-pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
        pid_ = -1;
    }

    void Open(const std::string& url) { Command("POST", "/url", {{"url", url}}); }

    Json Script(const std::string& script) { return Command("POST", "/execute/sync", {{"script", script}, {"args", Json::array()}}); }

    // The element reference of the first element matching `css`.
    Json Element(const std::string& css) {
        return Command("POST", "/element", {{"using", "css selector"}, {"value", css}});
    }

    // Presses the mouse at (`x`, `y`) from the middle of `element`, or
    // releases it; the pointer stays pressed between the two calls.
    void Press(const Json& element, int x, int y) {
        const Json move{{"type", "pointerMove"}, {"duration", 0}, {"origin", element}, {"x", x}, {"y", y}};
        Pointer(Json::array({move, Json{{"type", "pointerDown"}, {"button", 0}}}));
    }
    void Release() { Pointer(Json::array({Json{{"type", "pointerUp"}, {"button", 0}}})); }

    // The page as PNG bytes.
    std::string Screenshot() { return DecodeBase64(Command("GET", "/screenshot", Json())); }

private:
    void StartSession(const std::string& profileDir, int width, int height) {
        WaitUntilReady();
        // A headless window has a least width wider than a phone; the page
        // gets the phone's viewport through device emulation instead.
        const Json options = {
            {"binary", kChromium},
            {"args", {"--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--hide-scrollbars",
                      "--no-first-run", "--user-data-dir=" + profileDir}},
            {"mobileEmulation", {{"deviceMetrics", {{"width", width}, {"height", height}, {"pixelRatio", 1}}}}}};
        const Json capabilities = {{"alwaysMatch", {{"browserName", "chrome"}, {"goog:chromeOptions", options}}}};
        const Json session = Command("POST", "", {{"capabilities", capabilities}});
        session_ += "/" + session["sessionId"].get<std::string>();
    }

    void WaitUntilReady() {
        const bool ready = Eventually([&] {
            const httplib::Result status = client_.Get("/status");
            return status && status->status == 200 &&
                   Json::parse(status->body, nullptr, false)["value"]["ready"] == true;
        }, 10000);
        if (!ready) throw std::runtime_error("chromedriver did not start");
    }

    void Pointer(const Json& actions) {
        const Json source = {
            {"type", "pointer"}, {"id", "finger"}, {"parameters", {{"pointerType", "mouse"}}}, {"actions", actions}};
        Command("POST", "/actions", Json{{"actions", Json::array({source})}});
    }

    // The answer's value to a command of the session (of the driver before
    // the session starts); a WebDriver error is thrown with its message.
    Json Command(const std::string& method, const std::string& command, const Json& body) {
        const std::string path = session_ + command;
        const httplib::Result result = method == "GET" ? client_.Get(path.c_str())
                                                       : client_.Post(path.c_str(), body.dump(), "application/json");
        if (!result) throw std::runtime_error(method + " " + path + ": no answer from chromedriver");
        const Json answer = Json::parse(result->body, nullptr, false);
        if (result->status != 200)
            throw std::runtime_error(method + " " + path + ": " + answer["value"].value("message", result->body));
        return answer["value"];
    }

    int port_;
    httplib::Client client_;
    pid_t pid_ = -1;
    std::string session_ = "/session";
};

}  // namespace vorna_test
