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
    const std::string stx = "\x02", etx = "\x03";
    const struct {
        const char* protocol;
        std::string bytes;
        MessageClass expected;
    } rows[] = {
        {"Pelco-D", Bytes("FF 01 00 04 1F 00 24"), {1, MessageKind::kMotion, kMove}},
        {"Pelco-D", Bytes("FF 01 00 00 00 00 01"), {1, MessageKind::kStop, kMove}},
        {"Pelco-D", Bytes("FF 02 00 07 00 05 0E"), {2, MessageKind::kOther, 0}},
        {"Pelco-D", Bytes("FF 01 00 2D 00 00 2E FF 01 00 41 00 80 C2"), {1, MessageKind::kOther, 0}},
        {"Pelco-D", Bytes("FF 01 00 04 1F 00 25"), {-1, MessageKind::kUnknown, 0}},
        {"Pelco-D", Bytes("FF 01 00 00 00 00 01 FF 02 00 00 00 00 02"), {-1, MessageKind::kUnknown, 0}},
        {"HSD-Pelco-D", Bytes("FF 04 00 02 00 00 06 FF 04 00 07 00 50 5B"), {4, MessageKind::kOther, 0}},
        {"AD-RS422", Bytes("01 83 7C"), {1, MessageKind::kStop, kPan}},
        {"AD-RS422", Bytes("01 86 79"), {1, MessageKind::kStop, kTilt}},
        {"AD-RS422", Bytes("01 8A 75"), {1, MessageKind::kMotion, kZoom}},
        {"Panasonic", stx + "AD12;GC7:9028870" + etx, {12, MessageKind::kMotion, kMove}},
        {"Panasonic", stx + "AD01;GC7:9028100" + etx, {1, MessageKind::kStop, kMove}},
        {"Panasonic", stx + "AD01;GC7:9030002" + etx, {1, MessageKind::kOther, 0}},
        {"Panasonic", stx + "AD01;GC7:9030055" + etx + stx + "AD01;GC7:9028100" + etx, {1, MessageKind::kOther, 0}},
        {"Panasonic", stx + "AD01;GC7:9028870", {-1, MessageKind::kUnknown, 0}},
    };
    for (const auto& row : rows) {
        const MessageClass found = ClassifierFor(row.protocol)(row.bytes);
        EXPECT_EQ(row.expected.camera, found.camera) << row.protocol << " row " << &row - rows;
        EXPECT_EQ(row.expected.kind, found.kind) << row.protocol << " row " << &row - rows;
        EXPECT_EQ(row.expected.axes, found.axes) << row.protocol << " row " << &row - rows;
    }
}

}  // namespace
