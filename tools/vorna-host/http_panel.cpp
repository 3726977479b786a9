#include "http_panel.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <netinet/in.h>

#include <httplib.h>

#include <cerrno>
#include <climits>
#include <condition_variable>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <thread>

#include "camera_guard.h"
#include "panel_page.h"

namespace vorna_host {

namespace {

// Every call and the page fit in far less; a larger body is refused unread.
constexpr size_t kLargestBody = 4096;
// A page holds one connection for the frame log and one for its calls.
constexpr size_t kServingThreads = 16;
constexpr auto kLogWait = std::chrono::milliseconds(500);
constexpr auto kWatchdogStep = std::chrono::milliseconds(100);
constexpr int kMissingToken = 401;
constexpr int kWrongToken = 403;

const char* const kJson = "application/json";

// "Bearer TOKEN" in Authorization, or ?token=TOKEN where a header cannot be
// set (the page itself, the event stream).
std::string PresentedToken(const httplib::Request& request) {
    const std::string authorization = request.get_header_value("Authorization");
    const std::string bearer = "Bearer ";
    if (authorization.compare(0, bearer.size(), bearer) == 0) return authorization.substr(bearer.size());
    return request.get_param_value("token");
}

bool ParseCameraNumber(const std::string& text, int& number) {
    errno = 0;
    char* end = nullptr;
    const long value = std::strtol(text.c_str(), &end, 10);
    if (errno != 0 || *end != '\0' || value < INT_MIN || value > INT_MAX) return false;
    number = static_cast<int>(value);
    return true;
}

std::string ReasonFor(int status) {
    switch (status) {
        case 404: return "no such page or API call";
        case 405: return "method not allowed here";
        case 413: return "request too large (at most " + std::to_string(kLargestBody) + " bytes)";
        case 414: return "request address too long";
        default: return "malformed request";
    }
}

void Answer(httplib::Response& response, const PanelReply& reply) {
    response.status = reply.status;
    response.set_content(reply.body, kJson);
}

std::string FrameEvent(const LoggedFrame& frame) {
    const nlohmann::json data{{"sequence", frame.sequence}, {"ms", frame.milliseconds}, {"line", frame.line},
                              {"hex", frame.hex},           {"meaning", frame.meaning}};
    return "event: frame\ndata: " + data.dump() + "\n\n";
}

// The IPv4 addresses of this machine's network interfaces other than loopback.
std::vector<std::string> InterfaceAddresses() {
    std::vector<std::string> addresses;
    ifaddrs* interfaces = nullptr;
    if (getifaddrs(&interfaces) != 0) return addresses;
    for (const ifaddrs* entry = interfaces; entry != nullptr; entry = entry->ifa_next) {
        if (entry->ifa_addr == nullptr || entry->ifa_addr->sa_family != AF_INET) continue;
        char text[INET_ADDRSTRLEN];
        const auto* address = reinterpret_cast<const sockaddr_in*>(entry->ifa_addr);
        if (inet_ntop(AF_INET, &address->sin_addr, text, sizeof text) && !IsLoopbackAddress(text))
            addresses.push_back(text);
    }
    freeifaddrs(interfaces);
    return addresses;
}

}  // namespace

struct HttpPanel::Running {
    Running(const Settings& settings, PanelApi& api, FrameLog& frames, std::function<void(const std::string&)> report)
        : settings(settings), api(api), frames(frames), report(std::move(report)) {}

    void Route();
    void ServeFrames(httplib::Response& response);
    void WatchMotion();
    void Stop();

    Settings settings;
    PanelApi& api;
    FrameLog& frames;
    std::function<void(const std::string&)> report;
    httplib::Server server;
    int port = 0;
    std::thread listener;
    std::thread watchdog;
    std::mutex mutex;
    std::condition_variable wake;
    bool stopping = false;
};

void HttpPanel::Running::Route() {
    server.new_task_queue = [] { return new httplib::ThreadPool(kServingThreads); };
    // The library's default lets a second host bind the same port and take
    // part of the phone's requests; a port already in use must fail the start.
    server.set_socket_options([](int socket) {
        const int yes = 1;
        setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    });
    server.set_payload_max_length(kLargestBody);
    server.set_keep_alive_timeout(1);
    server.set_pre_routing_handler([this](const httplib::Request& request, httplib::Response& response) {
        const std::string presented = PresentedToken(request);
        const std::string refusal = settings.access.Refusal(presented);
        if (refusal.empty()) return httplib::Server::HandlerResponse::Unhandled;
        Answer(response, PanelError(presented.empty() ? kMissingToken : kWrongToken, refusal));
        return httplib::Server::HandlerResponse::Handled;
    });
    server.set_error_handler([](const httplib::Request&, httplib::Response& response) {
        if (response.body.empty()) Answer(response, PanelError(response.status, ReasonFor(response.status)));
    });
    server.Get("/", [](const httplib::Request&, httplib::Response& response) {
        response.set_header("Cache-Control", "no-store");
        response.set_content(PanelPage(), "text/html; charset=utf-8");
    });
    server.Get("/api/cameras", [this](const httplib::Request&, httplib::Response& response) {
        Answer(response, api.Cameras());
    });
    server.Get("/api/lines", [this](const httplib::Request&, httplib::Response& response) {
        Answer(response, api.Lines());
    });
    server.Get("/api/frames", [this](const httplib::Request&, httplib::Response& response) { ServeFrames(response); });
    server.Post(R"(/api/cameras/([^/]+)/([^/]+)/([^/]+)/([a-z]+))",
                [this](const httplib::Request& request, httplib::Response& response) {
                    CameraKey camera;
                    if (!ParseCameraNumber(request.matches[1], camera.devicesId) ||
                        !ParseCameraNumber(request.matches[2], camera.deviceNumber) ||
                        !ParseCameraNumber(request.matches[3], camera.inputNumber)) {
                        Answer(response, PanelError(400, "a camera is three integers: /api/cameras/DEVICES/DEVICE/INPUT"));
                        return;
                    }
                    Answer(response, api.Act(camera, request.matches[4], request.body));
                });
}

// Each page that follows the log gets the frames kept so far, then every new
// one, and the line counters at least twice a second.
void HttpPanel::Running::ServeFrames(httplib::Response& response) {
    response.set_header("Cache-Control", "no-store");
    auto lastSent = std::make_shared<uint64_t>(0);
    response.set_chunked_content_provider("text/event-stream", [this, lastSent](size_t, httplib::DataSink& sink) {
        std::string events;
        for (const LoggedFrame& frame : frames.After(*lastSent, kLogWait)) {
            events += FrameEvent(frame);
            *lastSent = frame.sequence;
        }
        {
            std::lock_guard<std::mutex> guard(mutex);
            if (stopping) return false;
        }
        events += "event: lines\ndata: " + api.Lines().body + "\n\n";
        return sink.write(events.data(), events.size());
    });
}

void HttpPanel::Running::WatchMotion() {
    std::unique_lock<std::mutex> lock(mutex);
    while (!wake.wait_for(lock, kWatchdogStep, [this] { return stopping; })) {
        lock.unlock();
        for (const CameraKey& camera : api.StopOverdue(MotionWatchdog::Clock::now()))
            report("panel: camera " + CameraName(camera) + " stopped, its page sent nothing for a second");
        lock.lock();
    }
}

void HttpPanel::Running::Stop() {
    {
        std::lock_guard<std::mutex> guard(mutex);
        stopping = true;
    }
    wake.notify_all();
    frames.Close();
    server.stop();
    if (listener.joinable()) listener.join();
    if (watchdog.joinable()) watchdog.join();
}

std::unique_ptr<HttpPanel> HttpPanel::Start(const Settings& settings, PanelApi& api, FrameLog& frames,
                                            std::function<void(const std::string&)> report, std::string& error) {
    auto running = std::make_unique<Running>(settings, api, frames, std::move(report));
    running->Route();
    Running& serving = *running;
    serving.port = settings.port == 0 ? serving.server.bind_to_any_port(settings.address)
                                      : (serving.server.bind_to_port(settings.address, settings.port) ? settings.port : -1);
    if (serving.port <= 0) {
        error = "cannot listen on " + settings.address + ":" + std::to_string(settings.port) + ": " +
                std::strerror(errno);
        return nullptr;
    }
    serving.listener = std::thread([&serving] { serving.server.listen_after_bind(); });
    serving.watchdog = std::thread([&serving] { serving.WatchMotion(); });
    return std::unique_ptr<HttpPanel>(new HttpPanel(std::move(running)));
}

HttpPanel::HttpPanel(std::unique_ptr<Running> running) : running_(std::move(running)) {}

HttpPanel::~HttpPanel() { running_->Stop(); }

int HttpPanel::Port() const { return running_->port; }

std::vector<std::string> HttpPanel::Addresses() const {
    const std::string& address = running_->settings.address;
    const bool anyAddress = address == "0.0.0.0" || address == "::";
    std::vector<std::string> hosts = anyAddress ? InterfaceAddresses() : std::vector<std::string>{address};
    if (hosts.empty()) hosts.push_back(address);
    const std::string& token = running_->settings.access.Token();
    std::vector<std::string> urls;
    for (const std::string& host : hosts) {
        const std::string bracketed = host.find(':') != std::string::npos ? "[" + host + "]" : host;
        urls.push_back("http://" + bracketed + ":" + std::to_string(running_->port) + "/" +
                       (token.empty() ? "" : "?token=" + token));
    }
    return urls;
}

}  // namespace vorna_host
