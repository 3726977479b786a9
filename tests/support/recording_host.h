// Stands in for the host callback in unit tests: records every message the
// module sends, with its payload copied, and accepts it.
#pragma once

#include <string>
#include <vector>

#include "host/host_sender.h"

namespace vorna_test {

struct RecordedMessage {
    HostMessage record;
    std::string payload;
};

class RecordingHost {
public:
    RecordingHost();
    ~RecordingHost();

    // Payloads of the serial messages, in order.
    std::vector<std::string> SerialPayloads() const;

    std::vector<RecordedMessage> sent;

private:
    HostCallback previous_;
};

// Bytes as upper-case hex pairs separated by blanks, e.g. "FF 01 00".
std::string Hex(const std::string& bytes);
// The reverse: "FF 01 00" to bytes.
std::string FromHex(const std::string& hex);

}  // namespace vorna_test
