// Everything the module sends comes through one callback: serial output goes
// to the line with that stream number, log lines, the announcement and
// configuration notices are reported on standard error as they arrive.
#pragma once

#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "line_counters.h"
#include "line_writer.h"
#include "vorna/host_abi.h"

namespace vorna_host {

// "configuration: 2 cameras, 12 protocols" for a configuration notice.
std::string DescribeConfiguration(const std::string& notice);
// "log 50: text" for "<log_msg level="50">text</log_msg>".
std::string DescribeLog(const std::string& text);

class MessageRouter {
public:
    explicit MessageRouter(FILE* report) : report_(report) {}

    struct NamedCounters {
        std::string line;
        LineCounters counters;
    };

    // Starts the line's writer.
    void AddLine(uint64_t stream, std::string name, std::unique_ptr<LineWriter> writer);

    // Hands every configuration notice to `observer` as well.
    void ObserveConfiguration(std::function<void(const std::string& notice)> observer);

    // Serial messages the module handed over on the calling thread so far:
    // a command's own frames come back inside the call that sent it.
    static unsigned long SerialMessagesOnThisThread();

    // 0 when the message was taken; non-zero for serial output to a stream
    // that has no line, which the module reports as a refused serial event.
    int Route(const HostMessage& message);
    // Waits until everything handed to any line so far has left the wire.
    void DrainLines();
    // Every line's counters, in stream order. Any thread may ask at any time:
    // each line's are copied under that line's lock.
    std::vector<NamedCounters> Counters() const;
    // One DescribeLineCounters line per line, in stream order.
    std::string DescribeLines() const;
    // "vorna-host: TEXT" on the report stream.
    void Report(const std::string& text);

    // The host callback handed to the module; routes to the installed router.
    static int Callback(HostMessage* message, int zero);
    static void Install(MessageRouter* router);

private:
    struct NamedLine {
        std::string name;
        std::unique_ptr<LineWriter> writer;
    };

    int SendToLine(uint64_t stream, const uint8_t* bytes, size_t length);

    FILE* report_;
    std::map<uint64_t, NamedLine> lines_;
    std::function<void(const std::string&)> configurationObserver_;
};

}  // namespace vorna_host
