// The installer's console on a terminal: a prompt, line editing and history
// (libedit). Its keystrokes are read by a function of the host's own that
// also watches for stop signals, so a signal still ends a wait for the next
// command.
#pragma once

#include <string>

#include "stop_signal.h"

struct editline;
struct history;

namespace vorna_host {

class Console {
public:
    enum class Result { kLine, kEnd, kStopped };

    // Takes over the terminal on standard input with `prompt`. The destructor
    // gives the terminal back as it was.
    Console(const std::string& prompt, StopSignal& stop);
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    // The next line the operator entered, without its line break.
    Result Next(std::string& line);

    // Shows `prompt` instead of the usual one until RestorePrompt.
    void SetPrompt(const std::string& prompt) { shown_ = prompt; }
    void RestorePrompt() { shown_ = prompt_; }

private:
    static char* Prompt(editline* editor);
    static int ReadKey(editline* editor, wchar_t* key);

    std::string prompt_;
    std::string shown_;
    StopSignal& stop_;
    editline* editor_;
    history* history_;
};

}  // namespace vorna_host
