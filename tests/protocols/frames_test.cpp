// Runs every row of every tests/protocols/*.frames file: the operation on the
// section's protocol object must build exactly the row's bytes.
#include <gtest/gtest.h>

#include <memory>

#include "protocols/protocol_table.h"
#include "support/frames_file.h"
#include "support/protocol_call.h"

using namespace vorna;
using namespace vorna_test;

namespace {

// A fresh object for a section, so state from an earlier section never leaks.
std::unique_ptr<CProtocol> NewProtocol(const std::string& name) {
    ProtocolTable table;
    FillProtocolTable(table);
    auto found = table.find(name);
    return found == table.end() ? nullptr : std::move(found->second);
}

}  // namespace

TEST(Frames, EveryRowBuildsItsBytes) {
    const std::vector<std::string> files = FramesFilesIn(VORNA_FRAMES_DIR);
    ASSERT_FALSE(files.empty());
    for (const std::string& file : files) {
        std::unique_ptr<CProtocol> protocol;
        int section = 0;
        for (const FramesRow& row : ReadFramesFile(file)) {
            SCOPED_TRACE(row.where);
            if (row.section != section) {
                section = row.section;
                protocol = NewProtocol(row.protocol);
            }
            ASSERT_NE(protocol, nullptr) << "no protocol named " << row.protocol;
            const Bytes built = CallOperation(*protocol, row.operation, row.args);
            EXPECT_EQ(FrameNotation(built, row.textNotation), FrameNotation(row.expected, row.textNotation));
        }
    }
}
