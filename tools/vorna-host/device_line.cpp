#include "device_line.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace vorna_host {

namespace {

struct BaudRate {
    int baud;
    speed_t speed;
};

const BaudRate kBaudRates[] = {
    {1200, B1200},   {2400, B2400},   {4800, B4800},     {9600, B9600},
    {19200, B19200}, {38400, B38400}, {57600, B57600},   {115200, B115200},
};

// A line that accepts nothing for this long is stalled (flow control held,
// adapter gone); the frame is dropped rather than holding up every camera.
constexpr int kStallTimeoutMs = 1000;

bool WaitUntilWritable(int fd) {
    pollfd entry{fd, POLLOUT, 0};
    for (;;) {
        const int ready = poll(&entry, 1, kStallTimeoutMs);
        if (ready < 0 && errno == EINTR) continue;
        return ready > 0 && (entry.revents & POLLOUT) != 0;
    }
}

std::string InUse(const std::string& path) {
    return path + " is in use by another program; a line must have one writer";
}

}  // namespace

bool ConfigureRaw8N1(int fd, speed_t speed) {
    termios settings;
    if (tcgetattr(fd, &settings) != 0) return false;
    cfmakeraw(&settings);
    settings.c_cflag &= ~(CSIZE | PARENB | CSTOPB | CRTSCTS);
    settings.c_cflag |= CS8 | CLOCAL | CREAD;
    settings.c_cc[VMIN] = 0;
    settings.c_cc[VTIME] = 0;
    return cfsetispeed(&settings, speed) == 0 && cfsetospeed(&settings, speed) == 0 &&
           tcsetattr(fd, TCSANOW, &settings) == 0;
}

bool LookUpBaud(int baud, speed_t& speed) {
    for (const BaudRate& rate : kBaudRates) {
        if (rate.baud != baud) continue;
        speed = rate.speed;
        return true;
    }
    return false;
}

std::string SupportedBauds() {
    std::string list;
    for (const BaudRate& rate : kBaudRates) {
        if (!list.empty()) list += ", ";
        list += std::to_string(rate.baud);
    }
    return list;
}

std::unique_ptr<DeviceLine> DeviceLine::Open(const std::string& path, int baud, std::string& error) {
    speed_t speed;
    if (!LookUpBaud(baud, speed)) {
        error = "bad baud rate " + std::to_string(baud) + " (supported: " + SupportedBauds() + ")";
        return nullptr;
    }
    // Non-blocking, so that a stalled line can time out instead of hanging the
    // module's worker inside the host callback.
    const int fd = open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        error = errno == EBUSY ? InUse(path) : "cannot open " + path + ": " + std::strerror(errno);
        return nullptr;
    }
    if (!ConfigureRaw8N1(fd, speed)) {
        error = "cannot set up " + path + " as a serial line: " + std::strerror(errno);
        close(fd);
        return nullptr;
    }
    // Two programs writing one line garble each other's frames: the lock
    // keeps out a second host, exclusive mode any other program.
    if (flock(fd, LOCK_EX | LOCK_NB) != 0) {
        error = InUse(path);
        close(fd);
        return nullptr;
    }
    ioctl(fd, TIOCEXCL);
    return std::unique_ptr<DeviceLine>(new DeviceLine(fd));
}

// Exclusive mode stays with the terminal while anyone else holds it open;
// the next program must be able to open the line once this host let go.
DeviceLine::~DeviceLine() {
    ioctl(fd_, TIOCNXCL);
    close(fd_);
}

bool DeviceLine::Send(const uint8_t* bytes, size_t length, std::string& error) {
    size_t written = 0;
    while (written < length) {
        const ssize_t result = write(fd_, bytes + written, length - written);
        if (result > 0) {
            written += static_cast<size_t>(result);
        } else if (result < 0 && errno == EINTR) {
            continue;
        } else if (result == 0 || errno == EAGAIN || errno == EWOULDBLOCK) {
            if (!WaitUntilWritable(fd_)) {
                error = "line stalled, frame dropped after " + std::to_string(written) + " of " +
                        std::to_string(length) + " bytes";
                return false;
            }
        } else {
            gone_ = errno == EIO || errno == ENXIO || errno == ENODEV;
            error = std::strerror(errno);
            return false;
        }
    }
    return true;
}

size_t DeviceLine::Unsent() {
    int queued = 0;
    return ioctl(fd_, TIOCOUTQ, &queued) == 0 && queued > 0 ? static_cast<size_t>(queued) : 0;
}

}  // namespace vorna_host
