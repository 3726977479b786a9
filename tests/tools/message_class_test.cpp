// Messages of the module read back as the line scheduler sees them.
#include <gtest/gtest.h>

#include "message_class.h"

using namespace vorna_host;

namespace {

std::string Bytes(const std::string& hex) {
    std::string bytes;
    for (size_t at = 0; at < hex.size(); at += 3) bytes += static_cast<char>(std::stoi(hex.substr(at, 2), nullptr, 16));
    return bytes;
}

TEST(MessageClass, MessagesNameTheirCameraKindAndAxes) {
    constexpr unsigned kMove = kPan | kTilt | kZoom;
    const struct {
        const char* protocol;
        const char* hex;
        MessageClass expected;
    } rows[] = {
        {"Pelco-D", "FF 01 00 04 1F 00 24", {1, MessageKind::kMotion, kMove}},
        {"Pelco-D", "FF 01 00 00 00 00 01", {1, MessageKind::kStop, kMove}},
        {"Pelco-D", "FF 02 00 07 00 05 0E", {2, MessageKind::kOther, 0}},
        {"Pelco-D", "FF 01 00 2D 00 00 2E FF 01 00 41 00 80 C2", {1, MessageKind::kOther, 0}},
        {"Pelco-D", "FF 01 00 04 1F 00 25", {-1, MessageKind::kUnknown, 0}},
        {"Pelco-D", "FF 01 00 00 00 00 01 FF 02 00 00 00 00 02", {-1, MessageKind::kUnknown, 0}},
        {"HSD-Pelco-D", "FF 04 00 02 00 00 06 FF 04 00 07 00 50 5B", {4, MessageKind::kOther, 0}},
        {"AD-RS422", "01 83 7C", {1, MessageKind::kStop, kPan}},
        {"AD-RS422", "01 86 79", {1, MessageKind::kStop, kTilt}},
        {"AD-RS422", "01 8A 75", {1, MessageKind::kMotion, kZoom}},
    };
    for (const auto& row : rows) {
        const MessageClass found = ClassifierFor(row.protocol)(Bytes(row.hex));
        EXPECT_EQ(row.expected.camera, found.camera) << row.hex;
        EXPECT_EQ(row.expected.kind, found.kind) << row.hex;
        EXPECT_EQ(row.expected.axes, found.axes) << row.hex;
    }
}

}  // namespace
