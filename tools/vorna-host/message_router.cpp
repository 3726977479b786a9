#include "message_router.h"

namespace vorna_host {

namespace {

constexpr int kRefused = 1;

MessageRouter* g_router = nullptr;
thread_local unsigned long t_serialMessages = 0;

size_t CountOccurrences(const std::string& text, const std::string& part) {
    size_t count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) ++count;
    return count;
}

// The value of `name="..."` in an element printed by the module.
std::string AttributeValue(const std::string& text, const std::string& name) {
    const std::string head = " " + name + "=\"";
    const size_t start = text.find(head);
    if (start == std::string::npos) return std::string();
    const size_t valueStart = start + head.size();
    return text.substr(valueStart, text.find('"', valueStart) - valueStart);
}

}  // namespace

std::string DescribeConfiguration(const std::string& notice) {
    // Every camera is one Input element; every protocol the module offers is
    // one Protocol element (the Input's own Protocol attribute has no '<').
    return "configuration: " + std::to_string(CountOccurrences(notice, "<Input ")) + " cameras, " +
           std::to_string(CountOccurrences(notice, "<Protocol ")) + " protocols";
}

std::string DescribeLog(const std::string& text) {
    const std::string head = "<log_msg level=\"";
    const std::string tail = "</log_msg>";
    const size_t levelEnd = text.find("\">", head.size());
    const bool wrapped = text.compare(0, head.size(), head) == 0 && levelEnd != std::string::npos &&
                         text.size() >= levelEnd + 2 + tail.size() &&
                         text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
    if (!wrapped) return "log: " + text;
    const size_t messageStart = levelEnd + 2;
    return "log " + text.substr(head.size(), levelEnd - head.size()) + ": " +
           text.substr(messageStart, text.size() - tail.size() - messageStart);
}

void MessageRouter::AddLine(uint64_t stream, std::string name, std::unique_ptr<LineWriter> writer) {
    writer->Start();
    lines_[stream] = NamedLine{std::move(name), std::move(writer)};
}

std::string MessageRouter::DescribeLines() const {
    std::string text;
    for (const NamedCounters& line : Counters()) text += DescribeLineCounters(line.line, line.counters) + "\n";
    return text;
}

void MessageRouter::DrainLines() {
    for (auto& line : lines_) line.second.writer->Drain();
}

std::vector<MessageRouter::NamedCounters> MessageRouter::Counters() const {
    std::vector<NamedCounters> all;
    for (const auto& line : lines_) all.push_back(NamedCounters{line.second.name, line.second.writer->Counters()});
    return all;
}

int MessageRouter::Route(const HostMessage& message) {
    if (message.type == VORNA_TYPE_SERIAL) {
        ++t_serialMessages;
        return SendToLine(message.stream, static_cast<const uint8_t*>(message.data), message.length);
    }
    const std::string text(static_cast<const char*>(message.data), message.length);
    switch (message.type) {
        case VORNA_TYPE_LOG:
            Report(DescribeLog(text));
            return 0;
        case VORNA_TYPE_CONFIG:
            if (message.flags == VORNA_FLAGS_ANNOUNCEMENT)
                Report("module " + AttributeValue(text, "Name") + " " + AttributeValue(text, "Version"));
            else
                Report(DescribeConfiguration(text));
            if (message.flags != VORNA_FLAGS_ANNOUNCEMENT && configurationObserver_) configurationObserver_(text);
            return 0;
        default:
            return 0;
    }
}

void MessageRouter::ObserveConfiguration(std::function<void(const std::string&)> observer) {
    configurationObserver_ = std::move(observer);
}

unsigned long MessageRouter::SerialMessagesOnThisThread() { return t_serialMessages; }

int MessageRouter::SendToLine(uint64_t stream, const uint8_t* bytes, size_t length) {
    const auto found = lines_.find(stream);
    if (found == lines_.end()) {
        Report("serial output for unknown stream " + std::to_string(stream) + " dropped");
        return kRefused;
    }
    found->second.writer->Hand(std::string(reinterpret_cast<const char*>(bytes), length), LineWriter::Clock::now());
    return 0;
}

void MessageRouter::Report(const std::string& text) {
    const std::string line = "vorna-host: " + text + "\n";
    std::fwrite(line.data(), 1, line.size(), report_);
    std::fflush(report_);
}

int MessageRouter::Callback(HostMessage* message, int) { return g_router->Route(*message); }

void MessageRouter::Install(MessageRouter* router) { g_router = router; }

}  // namespace vorna_host
