// vorna-host: the reference host. Loads libvorna.so as a recorder does, owns
// the serial lines, and turns operator commands into event documents.
#include <fcntl.h>
#include <limits.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "camera_guard.h"
#include "config_check.h"
#include "console.h"
#include "device_line.h"
#include "documents.h"
#include "frame_log.h"
#include "http_panel.h"
#include "known_protocols.h"
#include "line_scheduler.h"
#include "line_writer.h"
#include "message_class.h"
#include "line_reader.h"
#include "message_router.h"
#include "module_driver.h"
#include "monitor.h"
#include "offline_runs.h"
#include "options.h"
#include "printed_line.h"
#include "reopening_line.h"
#include "session.h"
#include "stop_on_exit.h"
#include "stop_signal.h"

namespace vorna_host {
namespace {

constexpr int kUsageError = 2;
constexpr int kStartError = 1;
constexpr int kPanelWaitMs = 60000;

int Fail(int status, const std::string& message) {
    std::fprintf(stderr, "vorna-host: %s\n", message.c_str());
    return status;
}

std::string CurrentDirectory() {
    char path[PATH_MAX];
    return getcwd(path, sizeof path) != nullptr ? path : ".";
}

std::string Absolute(const std::string& path, const std::string& baseDir) {
    return path.empty() || path[0] == '/' ? path : baseDir + "/" + path;
}

// The libvorna.so of the build tree that holds this executable: beside it,
// or one directory up (build/tools/vorna-host next to build/libvorna.so);
// an installed vorna-host finds none there and takes the installed module.
std::string DefaultModulePath() {
    char self[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", self, sizeof self - 1);
    if (length <= 0) return VORNA_INSTALLED_MODULE;
    std::string dir(self, static_cast<size_t>(length));
    dir.resize(dir.rfind('/'));
    for (const std::string& candidate : {dir + "/libvorna.so", dir + "/../libvorna.so"})
        if (access(candidate.c_str(), F_OK) == 0) return candidate;
    return VORNA_INSTALLED_MODULE;
}

std::unique_ptr<LineWriter> MakeLineWriter(const LineOption& option, std::unique_ptr<SerialLine> line,
                                           MessageRouter& router) {
    LineScheduler scheduler(ClassifierFor(option.protocol), FindKnownProtocol(option.protocol)->keepsLineOrder);
    return std::make_unique<LineWriter>(std::move(line), std::move(scheduler), option.baud,
                                        [&router, name = option.name](const std::string& problem) {
                                            router.Report("line " + name + ": " + problem);
                                        });
}

// Stream numbers count from 1: a camera on stream 0 is one whose line the
// module does not know, and it sends nothing.
bool OpenLines(const std::vector<LineOption>& wanted, bool echo, std::chrono::steady_clock::time_point start,
               MessageRouter& router, FrameLog* frameLog, std::vector<LineBinding>& bindings, std::string& error) {
    for (size_t i = 0; i < wanted.size(); ++i) {
        const LineOption& option = wanted[i];
        std::unique_ptr<SerialLine> line;
        if (option.device.empty()) {
            line.reset(new PrintedLine(option, start, stdout));
        } else {
            line = OpenRealLine(option, echo, start, [&router](const std::string& text) { router.Report(text); },
                                error);
            if (!line) {
                error = "--line " + option.name + ": " + error;
                return false;
            }
        }
        if (frameLog) line = std::make_unique<LoggedLine>(std::move(line), option, start, *frameLog);
        const uint64_t stream = i + 1;
        router.AddLine(stream, option.name, MakeLineWriter(option, std::move(line), router));
        bindings.push_back(LineBinding{option.name, option.protocol, stream});
    }
    return true;
}

// Every camera of either list, once.
std::vector<CameraKey> Together(std::vector<CameraKey> cameras, const std::vector<CameraKey>& more) {
    for (const CameraKey& camera : more) {
        const bool known = std::any_of(cameras.begin(), cameras.end(), [&camera](const CameraKey& other) {
            return CameraName(other) == CameraName(camera);
        });
        if (!known) cameras.push_back(camera);
    }
    return cameras;
}

int OpenInput(const std::string& scriptPath, std::string& error) {
    if (scriptPath.empty()) return STDIN_FILENO;
    const int fd = open(scriptPath.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) error = "cannot open script " + scriptPath + ": " + std::strerror(errno);
    return fd;
}

int RunHost(const std::vector<std::string>& args) {
    std::vector<std::string> monitorArgs;
    if (IsMonitorCommand(args, monitorArgs)) return RunMonitor(monitorArgs, stdout, stderr);
    HostOptions options;
    std::string error;
    if (!ParseOptions(args, options, error)) return Fail(kUsageError, error);
    if (options.help) {
        std::fputs(UsageText().c_str(), stdout);
        return 0;
    }
    const std::string baseDir = CurrentDirectory();
    const std::string modulePath =
        options.modulePath.empty() ? DefaultModulePath() : Absolute(options.modulePath, baseDir);
    if (options.version) return PrintVersions(modulePath);
    if (options.check) return CheckConfiguration(options, modulePath);
    // A closed standard output shows up as a failed frame print, not a kill.
    signal(SIGPIPE, SIG_IGN);
    StopSignal stop;
    if (!stop.Install(error)) return Fail(kStartError, error);

    const auto start = std::chrono::steady_clock::now();
    const int input = OpenInput(Absolute(options.scriptPath, baseDir), error);
    if (input < 0) return Fail(kStartError, error);
    MessageRouter router(stderr);
    std::vector<LineBinding> bindings;
    const bool panelWanted = !options.httpAddress.empty();
    FrameLog frameLog;
    if (!OpenLines(options.lines, options.echo, start, router, panelWanted ? &frameLog : nullptr, bindings, error))
        return Fail(kStartError, error);
    std::unique_ptr<ModuleDriver> module = ModuleDriver::Open(modulePath, error);
    if (!module) return Fail(kStartError, "cannot load module " + modulePath + ": " + error);
    if (!options.workDir.empty() && chdir(options.workDir.c_str()) != 0)
        return Fail(kStartError, "cannot enter working directory " + options.workDir + ": " + std::strerror(errno));
    const std::string loadError = options.acceptBadConfig ? std::string() : ConfigFileLoadError();
    if (!loadError.empty())
        return Fail(kStartError, "VORNA.xml does not load: " + loadError +
                                     "; fix it, or start with --accept-bad-config (the module then keeps it as "
                                     "VORNA.xml.bad and starts without cameras)");

    LatestCameraTable cameras;
    router.ObserveConfiguration([&cameras](const std::string& notice) { cameras.TakeNotice(notice); });
    // The panel's port is taken before the module starts, so a port in use
    // ends the start before anything reaches the module; until the module's
    // first notice its table is empty and every camera call is refused.
    MotionWatchdog panelMotion;
    PanelApi panelApi(*module, cameras, [&router] { return router.Counters(); }, panelMotion);
    std::unique_ptr<HttpPanel> panel;
    if (panelWanted) {
        const HttpPanel::Settings panelSettings{options.httpAddress, options.httpPort,
                                                PanelAccess::For(options.httpAddress, options.httpToken)};
        panel = HttpPanel::Start(panelSettings, panelApi, frameLog, [&router](const std::string& text) {
            router.Report(text);
        }, error);
        if (!panel) return Fail(kStartError, "--http: " + error);
    }
    MessageRouter::Install(&router);
    module->Start(&MessageRouter::Callback);
    if (!bindings.empty()) module->UpdateConfiguration(SerialPortDocument(bindings));
    // Printed once the module holds its cameras with their lines bound.
    if (panel)
        for (const std::string& address : panel->Addresses()) router.Report("control panel at " + address);
    LineReader reader(input, stop);
    const bool interactive = options.scriptPath.empty() && isatty(input);
    std::unique_ptr<Console> console(interactive ? new Console("vorna> ", stop) : nullptr);
    reader.UseConsole(console.get());
    const Session::Settings settings{baseDir,     !options.scriptPath.empty(), start, &cameras, interactive,
                                     options.yes, &router};
    Session session(*module, stop, settings, stdout, stderr);
    session.Run(reader);
    console.reset();
    // The panel serves on after the console's input ends, until 'quit' or a
    // stop signal.
    if (panel && !session.Quit() && !stop.Raised()) {
        router.Report("end of commands; the control panel serves on until Ctrl-C");
        while (stop.Sleep(kPanelWaitMs)) {
        }
    }
    panel.reset();
    // What the operator asked for goes out first, then the stops, and only
    // then is the module closed.
    router.DrainLines();
    StopCameras(*module, Together(session.Motion().CommandedCameras(), panelMotion.Commanded()), stderr);
    router.DrainLines();
    module->Stop();
    return 0;
}

}  // namespace
}  // namespace vorna_host

int main(int argc, char** argv) {
    // Started without standard input (or output), the first descriptors the
    // host opens would land on 0 to 2 and be read or written as the console;
    // /dev/null keeps them taken, so a closed input simply ends the session.
    for (int fd = 0; fd <= 2; ++fd)
        if (fcntl(fd, F_GETFD) == -1 && open("/dev/null", O_RDWR) != fd) return 1;
    return vorna_host::RunHost(std::vector<std::string>(argv + 1, argv + argc));
}
