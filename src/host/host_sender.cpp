#include "host/host_sender.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace vorna {

HostCallback g_hostCallback = nullptr;

HostMessage MakeHostMessage(uint64_t type, uint64_t flags, uint64_t stream, const void* data,
                            uint32_t length) {
    HostMessage message;
    std::memset(&message, 0, sizeof message);
    message.size = sizeof(HostMessage);
    message.version = 1;
    message.length = length;
    message.data = data;
    message.stream = stream;
    message.type = type;
    message.flags = flags;
    return message;
}

int SendToHost(HostMessage* message) {
    return g_hostCallback(message, 0);
}

void LogToHost(int level, const std::string& message) {
    if (level == 0) return;
    const std::string text = "<log_msg level=\"" + std::to_string(level) + "\">" + message + "</log_msg>";
    HostMessage record = MakeHostMessage(VORNA_TYPE_LOG, VORNA_FLAGS_NOTICE, VORNA_MODULE_ID,
                                         text.data(), static_cast<uint32_t>(text.size()));
    SendToHost(&record);
}

void LogError(const std::string& message) {
    std::fprintf(stderr, "VORNA: %s\n", message.c_str());
}

std::string Format(const char* format, ...) {
    va_list args;
    va_start(args, format);
    va_list measure;
    va_copy(measure, args);
    const int size = std::vsnprintf(nullptr, 0, format, measure);
    va_end(measure);
    std::string text(size > 0 ? static_cast<size_t>(size) : 0, '\0');
    if (size > 0) std::vsnprintf(&text[0], text.size() + 1, format, args);
    va_end(args);
    return text;
}

}  // namespace vorna
