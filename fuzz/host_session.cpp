#include "host_session.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <optional>
#include <string>

#include "config/config_apply.h"
#include "config/config_writer.h"
#include "config/safe_file.h"
#include "config/xml_document.h"
#include "core/ptz_controller.h"
#include "env/environment.h"
#include "vorna/host_abi.h"
#include "vorna/ptz.h"

namespace vorna {
extern PtzController* g_controller;
}

namespace vorna_fuzz {

namespace {

const char* const kProtocolNames[VORNA_PROTOCOL_COUNT] = {VORNA_PROTOCOL_NAMES};
// No protocol frame comes near this; a longer one carries bytes that no
// command explains.
constexpr uint32_t kLongestFrame = 64;
// The fixed part of a log line, and the most a description from TinyXML or
// the C library adds to it.
constexpr size_t kLogOverhead = 256;
// A configuration element becomes at most this many times its own size in
// the notice (names escaped, every attribute written out).
constexpr size_t kNoticeGrowth = 16;

// What the host has seen of this module lifetime.
struct Observed {
    size_t bytesGiven = 0;      // every document handed to the module
    size_t emptyNoticeSize = 0;  // the notice of a module without cameras
    size_t notices = 0;
    size_t checkedNotices = 0;
    std::string lastNotice;
};

Observed g_observed;

class JumpingClock : public vorna::Clock {
public:
    int64_t Now() override { return now; }
    int64_t now = 1700000000000;
};

JumpingClock g_clock;
std::optional<vorna::ScopedEnvironment> g_environment;

bool AllZero(const uint8_t* bytes, size_t size) {
    return std::all_of(bytes, bytes + size, [](uint8_t b) { return b == 0; });
}

bool Parses(const std::string& text) {
    vorna::XmlDocument document;
    return document.ParseText(text.data(), text.size()) && document.RootElement() != nullptr &&
           std::strcmp(document.RootElement()->Value(), "Tarn") == 0;
}

void CheckLog(const std::string& payload) {
    static const std::string kStart = "<log_msg level=\"";
    Require(payload.compare(0, kStart.size(), kStart) == 0, "a log line starts <log_msg level=\"");
    Require(payload.size() <= kLogOverhead + 2 * g_observed.bytesGiven, "a log line is no longer than its inputs");
}

void CheckNotice(const std::string& payload) {
    Require(Parses(payload), "a configuration notice parses");
    if (g_observed.emptyNoticeSize == 0) g_observed.emptyNoticeSize = payload.size();
    Require(payload.size() <= g_observed.emptyNoticeSize + kNoticeGrowth * g_observed.bytesGiven,
            "a notice is no longer than the documents behind it");
    ++g_observed.notices;
    g_observed.lastNotice = payload;
}

int CheckingCallback(HostMessage* message, int zero) {
    Require(message != nullptr && zero == 0, "the callback gets a record and 0");
    const auto* bytes = reinterpret_cast<const uint8_t*>(message);
    Require(message->size == 224 && message->version == 1, "size 224, version 1");
    Require(message->reserved0 == 0 && message->reserved1 == 0 && AllZero(bytes + 56, 224 - 56),
            "reserved bytes are zero");
    Require(message->length == 0 || message->data != nullptr, "a payload has bytes");
    // Copying reads every byte the record claims, so a length beyond the
    // payload shows as an overflow.
    const std::string payload(static_cast<const char*>(message->data), message->length);
    switch (message->type) {
        case VORNA_TYPE_SERIAL:
            Require(message->flags == VORNA_FLAGS_SERIAL, "serial flags");
            Require(message->length > 0 && message->length <= kLongestFrame, "a frame of plausible size");
            break;
        case VORNA_TYPE_LOG:
            Require(message->flags == VORNA_FLAGS_NOTICE && message->stream == VORNA_MODULE_ID, "log record");
            CheckLog(payload);
            break;
        case VORNA_TYPE_CONFIG:
            Require(message->stream == VORNA_MODULE_ID, "notice stream");
            if (message->flags == VORNA_FLAGS_NOTICE)
                CheckNotice(payload);
            else
                Require(message->flags == VORNA_FLAGS_ANNOUNCEMENT, "announcement flags");
            break;
        default:
            Require(false, "a known message type");
    }
    return 0;
}

// One working directory for the whole run; each session rewrites the file.
void EnterWorkDirectory() {
    static bool entered = false;
    if (entered) return;
    const char* base = std::getenv("TMPDIR");
    std::string pattern = std::string(base != nullptr && *base != '\0' ? base : "/tmp") + "/vorna-fuzz-XXXXXX";
    Require(mkdtemp(&pattern[0]) != nullptr && chdir(pattern.c_str()) == 0, "a working directory");
    entered = true;
}

void WriteFile(const char* name, const std::string& content) {
    FILE* file = std::fopen(name, "wb");
    Require(file != nullptr, "the configuration file can be written");
    std::fwrite(content.data(), 1, content.size(), file);
    std::fclose(file);
}

std::string PrintStream(const TiXmlDocument& document) {
    TiXmlPrinter printer;
    printer.SetStreamPrinting();
    document.Accept(&printer);
    return printer.Str();
}

}  // namespace

void Require(bool condition, const char* what) {
    if (condition) return;
    std::fprintf(stderr, "broken promise: %s\n", what);
    std::abort();
}

HostSession::HostSession(const std::string& file) {
    EnterWorkDirectory();
    for (const char* stale : {"VORNA.xml", "VORNA.xml.pending", "VORNA.xml.bad"}) unlink(stale);
    if (!file.empty()) WriteFile("VORNA.xml", file);
    g_observed = Observed{};
    g_observed.bytesGiven = file.size();
    g_environment.emplace(g_clock);
    HostInterface host{};
    host.callback = &CheckingCallback;
    ModuleRegistration registration{};
    Load(&host, &registration);
    Open();
}

HostSession::~HostSession() {
    Close();
    Unload();
    g_environment.reset();
}

const std::string& HostSession::SiteFile() {
    static const std::string file = [] {
        std::string text = "<?xml version=\"1.0\" ?><Tarn><PTZ ID=\"1048576\"><Devices ID=\"1\"><Device Number=\"1\">";
        for (int line = 1; line <= VORNA_PROTOCOL_COUNT; ++line) {
            const std::string n = std::to_string(line);
            text += "<Input Number=\"" + n + "\" SerialPort=\"COM" + n + "\" Address=\"" + n +
                    "\" TourDwell=\"1\" TourEnabled=\"" + std::to_string(line % 2) +
                    "\" TourIdle=\"2\"><Preset Number=\"1\" Name=\"Gate\"><Tour Position=\"1\"/></Preset>"
                    "<Preset Number=\"2\" Name=\"Yard\"><Tour Position=\"2\"/></Preset></Input>";
        }
        return text + "</Device></Devices></PTZ></Tarn>";
    }();
    return file;
}

void HostSession::BindLines() {
    std::string text = "<Tarn Delta=\"0\"><Serial ID=\"851968\"><Input>";
    for (int line = 1; line <= VORNA_PROTOCOL_COUNT; ++line)
        text += "<Device Port=\"COM" + std::to_string(line) + "\" Protocol=\"" + kProtocolNames[line - 1] +
                "\" Use=\"2\" StreamID=\"" + std::to_string(line) + "\"/>";
    text += "</Input></Serial></Tarn>";
    Update(reinterpret_cast<const uint8_t*>(text.data()), text.size());
}

void HostSession::Event(uint64_t type, const uint8_t* data, size_t size) {
    g_observed.bytesGiven += size;
    HostEvent event{};
    event.size = sizeof event;
    event.version = 1;
    event.length = static_cast<int32_t>(size);
    event.data = data;
    event.type = type;
    event.flags = VORNA_FLAGS_EVENT;
    Write(&event);
}

void HostSession::Update(const uint8_t* data, size_t size) {
    g_observed.bytesGiven += size;
    IoctlRequest request{};
    request.op = VORNA_IOCTL_UPDATE_CONFIG;
    request.length = static_cast<uint32_t>(size);
    request.data = data;
    IOCTL(&request);
}

void HostSession::RunWorker(int passes) {
    vorna::PtzController& controller = *vorna::g_controller;
    for (int pass = 0; pass < passes; ++pass) {
        int64_t wait;
        {
            std::lock_guard<std::mutex> guard(controller.lock);
            wait = controller.StepDueCameras();
        }
        g_clock.now += std::max<int64_t>(wait, 1);
    }
}

void HostSession::CheckSavedFileLoadsBack() {
    if (g_observed.checkedNotices == g_observed.notices) return;
    g_observed.checkedNotices = g_observed.notices;
    vorna::XmlDocument file;
    Require(vorna::LoadDocument(file, "VORNA.xml"), "the saved file loads");
    vorna::PtzController reloaded;
    vorna::FillProtocolTable(reloaded.protocols);
    {
        std::lock_guard<std::mutex> guard(vorna::g_controller->lock);
        reloaded.serialLines = vorna::g_controller->serialLines;
    }
    vorna::ApplyConfiguration(reloaded, file, true);
    TiXmlDocument rebuilt;
    vorna::BuildConfigDocument(reloaded, rebuilt);
    Require(PrintStream(rebuilt) == g_observed.lastNotice, "the saved file loads back into the same camera table");
}

}  // namespace vorna_fuzz
