// Table-driven frame tests: each row builds one command on a protocol object
// and gives the bytes that must come out.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "protocols/protocol.h"
#include "support/recording_host.h"

namespace vorna_test {

template <typename Protocol>
struct FrameRow {
    std::function<vorna::Bytes(Protocol&)> build;
    std::string expected;  // "" when the protocol builds nothing
};

// How the rows write their bytes: binary frames as hex pairs ("FF 01 00"),
// text frames as the text itself.
enum class Notation { kHex, kText };

// Builds the rows in order on the one `protocol`, so a row also shows that
// the rows before it left nothing behind.
template <typename Protocol>
void ExpectFrames(Protocol& protocol, const std::vector<FrameRow<Protocol>>& rows,
                  Notation notation = Notation::kHex) {
    for (size_t row = 0; row < rows.size(); ++row) {
        SCOPED_TRACE("row " + std::to_string(row) + ": " + rows[row].expected);
        const vorna::Bytes built = rows[row].build(protocol);
        EXPECT_EQ(notation == Notation::kHex ? Hex(built) : built, rows[row].expected);
    }
}

}  // namespace vorna_test
