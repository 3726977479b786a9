#include "monitor.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <memory>

#include "device_line.h"
#include "known_protocols.h"
#include "monitor_identify.h"
#include "monitor_print.h"
#include "printed_line.h"
#include "stop_signal.h"

namespace vorna_host {

namespace {

constexpr int kUsageError = 2;
constexpr int kLineError = 1;

// Rates in the order they are tried: the usual ones of camera lines first.
const int kTriedBauds[] = {9600, 2400, 4800, 19200, 38400, 1200, 57600, 115200};

// Enough traffic at one baud rate to judge it, or as long as one waits for it.
constexpr size_t kSampleBytes = 512;
constexpr int kSampleMs = 1500;
// A sample this good ends the search at once.
constexpr double kCertainShare = 0.9;
constexpr size_t kCertainBytes = 64;
// Fewer valid bytes than this identify nothing, whatever their share.
constexpr size_t kLeastValidBytes = 16;

const char kNothingFound[] =
    "nothing recognised yet. If this lasts: swap the A and B (+ and -) wires, check the line termination "
    "(120 ohm at the far end of a long line, none in the middle), and make sure this is the camera line of the "
    "keyboard or recorder and that it is sending (move a camera).\n";

struct MonitorOptions {
    std::string device;
    int baud = 0;          // 0: find it
    std::string protocol;  // empty: find it
};

bool AllDigits(const std::string& text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

bool ParseDevice(const std::string& text, MonitorOptions& options, std::string& error) {
    const size_t colon = text.rfind(':');
    const std::string tail = colon == std::string::npos ? std::string() : text.substr(colon + 1);
    options.device = AllDigits(tail) ? text.substr(0, colon) : text;
    if (!AllDigits(tail)) return true;
    options.baud = tail.size() <= 7 ? std::stoi(tail) : 0;
    speed_t speed;
    if (LookUpBaud(options.baud, speed)) return true;
    error = "bad baud rate '" + tail + "' (supported: " + SupportedBauds() + ")";
    return false;
}

bool ParseMonitorOptions(const std::vector<std::string>& args, MonitorOptions& options, std::string& error) {
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        if (arg == "--protocol" || arg.compare(0, 11, "--protocol=") == 0) {
            if (arg == "--protocol" && i + 1 == args.size()) {
                error = "option --protocol needs a value";
                return false;
            }
            options.protocol = arg == "--protocol" ? args[++i] : arg.substr(11);
            if (FindKnownProtocol(options.protocol) != nullptr) continue;
            error = "unknown protocol '" + options.protocol + "' (known: " + KnownProtocolNames() + ")";
            return false;
        }
        if (arg.compare(0, 2, "--") == 0 || !options.device.empty()) {
            error = "unknown argument '" + arg + "'\n" + MonitorUsage();
            return false;
        }
        if (!ParseDevice(arg, options, error)) return false;
    }
    if (!options.device.empty()) return true;
    error = "no device\n" + MonitorUsage();
    return false;
}

// The line, opened for reading only: the monitor never sends a byte.
class WatchedLine {
public:
    ~WatchedLine() {
        if (fd_ >= 0) close(fd_);
    }

    bool Open(const std::string& path, std::string& error) {
        fd_ = open(path.c_str(), O_RDONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
        if (fd_ < 0) error = "cannot open " + path + ": " + std::strerror(errno);
        return fd_ >= 0;
    }

    // Sets the rate and drops what was read at the one before.
    bool SetBaud(int baud) {
        speed_t speed;
        return LookUpBaud(baud, speed) && ConfigureRaw8N1(fd_, speed) && tcflush(fd_, TCIFLUSH) == 0;
    }

    enum class Read { kBytes, kTimeout, kStopped, kGone };

    // Appends what arrives within `timeoutMs` to `bytes`.
    Read Next(StopSignal& stop, int timeoutMs, std::string& bytes) {
        pollfd entries[2] = {{fd_, POLLIN, 0}, {stop.fd(), POLLIN, 0}};
        const int ready = poll(entries, 2, timeoutMs);
        if (stop.Raised()) return Read::kStopped;
        if (ready <= 0) return Read::kTimeout;
        char chunk[4096];
        const ssize_t count = read(fd_, chunk, sizeof chunk);
        if (count > 0) {
            bytes.append(chunk, static_cast<size_t>(count));
            return Read::kBytes;
        }
        return count < 0 && (errno == EAGAIN || errno == EINTR) ? Read::kTimeout : Read::kGone;
    }

private:
    int fd_ = -1;
};

class Monitor {
public:
    Monitor(const MonitorOptions& options, FILE* out, FILE* err)
        : options_(options), out_(out), err_(err), start_(std::chrono::steady_clock::now()) {}

    int Run() {
        std::string error;
        if (!stop_.Install(error) || !line_.Open(options_.device, error)) return Fail(error);
        if (options_.baud != 0 && !options_.protocol.empty()) {
            Print("listening to " + options_.device + ": " + options_.protocol + " at " +
                  std::to_string(options_.baud) + " baud\n");
            return Watch(options_.protocol, options_.baud);
        }
        FamilyScore found;
        const WatchedLine::Read result = Identify(found);
        if (result != WatchedLine::Read::kBytes) return Finish(result);
        return Watch(found.protocol, found.baud);
    }

private:
    // Samples the line at each rate in turn, round after round, until a
    // protocol family forms most of the traffic.
    WatchedLine::Read Identify(FamilyScore& found) {
        const std::vector<std::string> families =
            options_.protocol.empty() ? ProtocolFamilies() : std::vector<std::string>{options_.protocol};
        const std::vector<int> bauds = options_.baud != 0
                                           ? std::vector<int>{options_.baud}
                                           : std::vector<int>(std::begin(kTriedBauds), std::end(kTriedBauds));
        Print("listening to " + options_.device + " to find its protocol and baud rate (Ctrl-C ends)\n");
        for (;;) {
            std::vector<LineSample> samples;
            for (int baud : bauds) {
                samples.push_back(LineSample{baud, {}});
                const WatchedLine::Read result = Sample(samples.back());
                if (result == WatchedLine::Read::kStopped || result == WatchedLine::Read::kGone) return result;
                const std::vector<FamilyScore> scores = ScoreSamples({samples.back()}, families);
                Print("  " + DescribeSample(scores) + "\n");
                if (scores.front().Share() >= kCertainShare && scores.front().validBytes >= kCertainBytes) break;
            }
            const std::vector<FamilyScore> scores = ScoreSamples(samples, families);
            const FamilyScore& best = scores.front();
            if (best.Share() >= kIdentifiedShare && best.validBytes >= kLeastValidBytes) {
                Print("identified " + DescribeIdentification(scores) + "\n");
                found = best;
                return WatchedLine::Read::kBytes;
            }
            Print(std::string("best guess so far ") + DescribeIdentification(scores) + "; " + kNothingFound);
        }
    }

    WatchedLine::Read Sample(LineSample& sample) {
        if (!line_.SetBaud(sample.baud)) return WatchedLine::Read::kGone;
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kSampleMs);
        while (sample.bytes.size() < kSampleBytes) {
            const auto left =
                std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now()).count();
            if (left <= 0) break;
            const WatchedLine::Read result = line_.Next(stop_, static_cast<int>(left), sample.bytes);
            if (result == WatchedLine::Read::kStopped || result == WatchedLine::Read::kGone) return result;
        }
        return WatchedLine::Read::kTimeout;
    }

    int Watch(const std::string& protocol, int baud) {
        if (!line_.SetBaud(baud))
            return Fail("cannot set " + options_.device + " to " + std::to_string(baud) + " baud");
        const std::unique_ptr<vorna::FrameDecoder> decoder = vorna::MakeFrameDecoder(protocol);
        WatchedLine::Read result;
        do {
            std::string bytes;
            result = line_.Next(stop_, -1, bytes);
            Show(decoder->Feed(bytes.data(), bytes.size()));
        } while (result == WatchedLine::Read::kBytes || result == WatchedLine::Read::kTimeout);
        Show(decoder->Flush());
        return Finish(result);
    }

    void Show(const std::vector<vorna::DecodedFrame>& frames) {
        for (const vorna::DecodedFrame& frame : frames) {
            table_.Count(frame);
            Print(FormatMonitorFrame(MillisecondsSince(start_), frame));
        }
    }

    int Finish(WatchedLine::Read result) {
        if (result == WatchedLine::Read::kGone)
            std::fprintf(err_, "vorna-host: %s went away\n", options_.device.c_str());
        Print(table_.Format());
        return result == WatchedLine::Read::kGone ? kLineError : 0;
    }

    int Fail(const std::string& error) {
        std::fprintf(err_, "vorna-host: %s\n", error.c_str());
        return kLineError;
    }

    void Print(const std::string& text) {
        std::fwrite(text.data(), 1, text.size(), out_);
        std::fflush(out_);
    }

    const MonitorOptions options_;
    FILE* out_;
    FILE* err_;
    const std::chrono::steady_clock::time_point start_;
    StopSignal stop_;
    WatchedLine line_;
    AddressTable table_;
};

}  // namespace

bool IsMonitorCommand(const std::vector<std::string>& args, std::vector<std::string>& monitorArgs) {
    const size_t first = args.size() >= 2 && args[0] == "--module" ? 2 : 0;
    if (args.size() <= first || args[first] != "monitor") return false;
    monitorArgs.assign(args.begin() + static_cast<long>(first) + 1, args.end());
    return true;
}

int RunMonitor(const std::vector<std::string>& args, FILE* out, FILE* err) {
    MonitorOptions options;
    std::string error;
    if (!ParseMonitorOptions(args, options, error)) {
        std::fprintf(err, "vorna-host: monitor: %s\n", error.c_str());
        return kUsageError;
    }
    signal(SIGPIPE, SIG_IGN);
    return Monitor(options, out, err).Run();
}

std::string MonitorUsage() {
    return "usage: vorna-host monitor DEVICE[:BAUD] [--protocol NAME]\n"
           "  prints every frame on a camera line driven by another keyboard or recorder,\n"
           "  without writing to it; finds the protocol and baud rate when not given.\n"
           "  Ctrl-C prints the addresses seen.\n";
}

}  // namespace vorna_host
