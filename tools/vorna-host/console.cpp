#include "console.h"

#include <histedit.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace vorna_host {

namespace {

constexpr int kHistorySize = 500;

}  // namespace

Console::Console(const std::string& prompt, StopSignal& stop)
    : prompt_(prompt), shown_(prompt), stop_(stop), editor_(el_init("vorna-host", stdin, stdout, stderr)), history_(history_init()) {
    HistEvent event;
    history(history_, &event, H_SETSIZE, kHistorySize);
    el_set(editor_, EL_CLIENTDATA, this);
    el_set(editor_, EL_EDITOR, "emacs");
    el_set(editor_, EL_PROMPT, &Console::Prompt);
    el_set(editor_, EL_HIST, history, history_);
    el_set(editor_, EL_GETCFN, &Console::ReadKey);
}

Console::~Console() {
    el_end(editor_);
    history_end(history_);
}

char* Console::Prompt(editline* editor) {
    Console* console = nullptr;
    el_get(editor, EL_CLIENTDATA, &console);
    return &console->shown_[0];
}

// One byte of the terminal, or 0 (the end) when a stop signal comes first.
int Console::ReadKey(editline* editor, wchar_t* key) {
    Console* console = nullptr;
    el_get(editor, EL_CLIENTDATA, &console);
    for (;;) {
        if (console->stop_.Raised()) return 0;
        pollfd entries[2] = {{STDIN_FILENO, POLLIN, 0}, {console->stop_.fd(), POLLIN, 0}};
        if (poll(entries, 2, -1) < 0 && errno != EINTR) return -1;
        if (entries[0].revents == 0) continue;
        unsigned char byte;
        const ssize_t count = read(STDIN_FILENO, &byte, 1);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return static_cast<int>(count);
        *key = byte;
        return 1;
    }
}

Console::Result Console::Next(std::string& line) {
    int count = 0;
    const char* text = el_gets(editor_, &count);
    if (stop_.Raised()) return Result::kStopped;
    if (text == nullptr || count <= 0) {
        std::fputs("\n", stdout);
        return Result::kEnd;
    }
    line.assign(text, static_cast<size_t>(count));
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
    if (!line.empty()) {
        HistEvent event;
        history(history_, &event, H_ENTER, line.c_str());
    }
    return Result::kLine;
}

}  // namespace vorna_host
