// The one way out of the module: the host callback, the message record and
// the log line. Knows nothing of the entry points, so the core can use it.
#pragma once

#include <cstdint>
#include <string>

#include "vorna/host_abi.h"
#include "vorna/ptz.h"

namespace vorna {

// Set by Load before anything is sent; kept after Unload.
extern HostCallback g_hostCallback;

// A record zeroed whole, with size 224, version 1 and the given fields.
HostMessage MakeHostMessage(uint64_t type, uint64_t flags, uint64_t stream, const void* data,
                            uint32_t length);

// Passes the record to the host callback and returns its result (0 = taken).
int SendToHost(HostMessage* message);

// Sends "<log_msg level="LEVEL">MESSAGE</log_msg>"; level 0 sends nothing.
// The message is inserted unescaped: the host treats the text as a log line.
void LogToHost(int level, const std::string& message);

// Reports a problem the host cannot be told about (a refused message, an
// exception stopped at the boundary): one "VORNA: " line on standard error.
void LogError(const std::string& message);

// printf-style formatting into a std::string.
std::string Format(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace vorna
