#include "support/recording_host.h"

#include <sstream>

#include "support/frames_file.h"

namespace vorna_test {

namespace {
RecordingHost* g_current = nullptr;

int Record(HostMessage* message, int) {
    g_current->sent.push_back({*message, std::string(static_cast<const char*>(message->data), message->length)});
    return 0;
}
}  // namespace

RecordingHost::RecordingHost() : previous_(vorna::g_hostCallback) {
    g_current = this;
    vorna::g_hostCallback = &Record;
}

RecordingHost::~RecordingHost() {
    vorna::g_hostCallback = previous_;
    g_current = nullptr;
}

std::vector<std::string> RecordingHost::SerialPayloads() const {
    std::vector<std::string> payloads;
    for (const auto& m : sent)
        if (m.record.type == VORNA_TYPE_SERIAL) payloads.push_back(m.payload);
    return payloads;
}

std::string Hex(const std::string& bytes) { return bytes.empty() ? "" : FrameNotation(bytes, false); }

std::string FromHex(const std::string& hex) {
    std::istringstream pairs(hex);
    std::string bytes;
    for (std::string pair; pairs >> pair;) bytes += static_cast<char>(std::stoi(pair, nullptr, 16));
    return bytes;
}

}  // namespace vorna_test
