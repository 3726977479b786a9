// Runs the built vorna-host as a child process with the built module, in a
// working directory of the test's, and collects what it prints.
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace vorna_test {

// How long a test waits for the host before it gives up: a hung host fails
// the test, and a loaded machine does not.
constexpr int kPatienceMs = 30000;

// Polls `done` until it holds; false once `timeoutMs` passed.
template <typename Condition>
bool Eventually(Condition done, int timeoutMs = kPatienceMs) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    while (!done()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

class HostProcess {
public:
    // Starts `vorna-host --module <built module> args...` in `workDir`, with
    // its input and output on pipes, or on a terminal (`out` then holds both
    // of its outputs).
    HostProcess(const std::vector<std::string>& args, const std::string& workDir, bool onATerminal = false) {
        OpenStandardDescriptors();
        std::vector<std::string> argv = {VORNA_HOST_PATH, "--module", VORNA_LIBRARY_PATH};
        argv.insert(argv.end(), args.begin(), args.end());
        if (onATerminal) {
            pid_ = forkpty(&output_, nullptr, nullptr, nullptr);
            if (pid_ == 0) Exec(argv, workDir);
            input_ = dup(output_);
            return;
        }
        int input[2], output[2], errors[2];
        if (pipe2(input, O_CLOEXEC) != 0 || pipe2(output, O_CLOEXEC) != 0 || pipe2(errors, O_CLOEXEC) != 0)
            throw std::runtime_error("pipe2");
        pid_ = fork();
        if (pid_ == 0) {
            dup2(input[0], STDIN_FILENO);
            dup2(output[1], STDOUT_FILENO);
            dup2(errors[1], STDERR_FILENO);
            Exec(argv, workDir);
        }
        close(input[0]);
        close(output[1]);
        close(errors[1]);
        input_ = input[1];
        output_ = output[0];
        errors_ = errors[0];
    }

    ~HostProcess() {
        if (pid_ > 0) {
            kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
        }
        CloseInput();
        for (int fd : {output_, errors_})
            if (fd >= 0) close(fd);
    }

    void Type(const std::string& text) {
        if (write(input_, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
            throw std::runtime_error("write to host");
    }

    void CloseInput() {
        if (input_ >= 0) close(input_);
        input_ = -1;
    }

    void Signal(int number) { kill(pid_, number); }

    // Reads until `done()` holds; false after `timeoutMs`.
    bool WaitUntil(const std::function<bool()>& done, int timeoutMs = kPatienceMs) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
        while (!done()) {
            if (!ReadSome(deadline)) return false;
        }
        return true;
    }

    // On a terminal: waits until the host has put it in raw mode, as a line
    // editor does only once it waits for a key (keys that came sooner would
    // meet the terminal's own line editing); false after the test's patience.
    bool WaitForRawTerminal() {
        termios mode{};
        return Eventually([&] { return tcgetattr(output_, &mode) == 0 && (mode.c_lflag & ICANON) == 0; });
    }

    // Waits for the host to exit and returns its exit status (-1 when it had
    // to be killed, or died of a signal).
    int Finish() {
        CloseInput();
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(kPatienceMs);
        while (ReadSome(deadline)) {
        }
        int status = 0;
        if (std::chrono::steady_clock::now() >= deadline) kill(pid_, SIGKILL);
        waitpid(pid_, &status, 0);
        pid_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    std::string out;
    std::string err;

private:
    static void Exec(std::vector<std::string>& argv, const std::string& workDir) {
        std::vector<char*> pointers;
        for (std::string& arg : argv) pointers.push_back(&arg[0]);
        pointers.push_back(nullptr);
        if (chdir(workDir.c_str()) == 0) execv(pointers[0], pointers.data());
        _exit(127);
    }

    // A test run without standard input (or output) would get the pipes on
    // descriptors 0 to 2, where the child's dup2 does nothing and the
    // close-on-exec flag stays set; /dev/null keeps the low descriptors taken.
    static void OpenStandardDescriptors() {
        for (int fd = 0; fd <= 2; ++fd)
            if (fcntl(fd, F_GETFD) == -1 && open("/dev/null", O_RDWR) != fd)
                throw std::runtime_error("standard descriptors");
    }

    // One read from each output that has data; false at the deadline or when
    // both are closed.
    bool ReadSome(std::chrono::steady_clock::time_point deadline) {
        if (output_ < 0 && errors_ < 0) return false;
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0) return false;
        pollfd entries[2] = {{output_, POLLIN, 0}, {errors_, POLLIN, 0}};
        if (poll(entries, 2, static_cast<int>(left.count())) <= 0) return false;
        ReadInto(entries[0], output_, out);
        ReadInto(entries[1], errors_, err);
        return true;
    }

    static void ReadInto(const pollfd& entry, int& fd, std::string& text) {
        if (entry.revents == 0) return;
        char chunk[4096];
        const ssize_t count = read(fd, chunk, sizeof chunk);
        if (count > 0) {
            text.append(chunk, static_cast<size_t>(count));
            return;
        }
        close(fd);
        fd = -1;
    }

    pid_t pid_ = -1;
    int input_ = -1;
    int output_ = -1;
    int errors_ = -1;
};

// The port of the control panel's address the host printed ("control panel at
// http://127.0.0.1:PORT/..."), or -1 when none came.
inline int WaitForPanelPort(HostProcess& host) {
    const std::string printed = "control panel at http://127.0.0.1:";
    if (!host.WaitUntil([&] { return host.err.find('\n', host.err.find(printed)) != std::string::npos; })) return -1;
    return std::atoi(host.err.c_str() + host.err.find(printed) + printed.size());
}

}  // namespace vorna_test
