#include "command_parser.h"

#include <gtest/gtest.h>

using namespace vorna_host;

namespace {

// "33:0 54:2.5" for the calls of an event command.
std::string Calls(const Command& command) {
    std::string text;
    for (const OpcodeCall& call : command.calls)
        text += (text.empty() ? "" : " ") + std::to_string(call.opcode) + ":" + FormatParm(call.parm);
    return text;
}

TEST(CommandParser, OperatorVerbsBecomeOpcodes) {
    const struct {
        const char* line;
        const char* calls;
    } rows[] = {
        {"left", "33:0"},           {"right", "34:0"},           {"up", "53:0"},
        {"down", "52:0"},           {"zoom in", "17:0"},         {"zoom out", "18:0"},
        {"iris open", "10:0"},      {"iris close", "11:0"},      {"iris stop", "62:0"},
        {"focus near", "12:0"},     {"focus far", "13:0"},       {"focus stop", "63:0"},
        {"preset set 4", "58:4"},   {"preset goto 2.5", "60:2.5"}, {"preset clear 4", "59:4"},
        {"pattern run 1", "69:1"},  {"pattern record 2", "70:2"}, {"pattern stop 2", "71:2"},
        {"menu on", "65:0"},        {"menu off", "66:0"},        {"speed pan 10", "39:10"},
        {"speed tilt 7", "46:7"},   {"speed zoom 3", "30:3"},    {"stop", "32:0 54:0 31:0"},
        {"raw 0x00090000", "64:589824"}, {"raw 4294967295", "64:-1"}, {"  op 73 5  ", "73:5"},
        {"op 9", "9:0"},
    };
    for (const auto& row : rows) {
        Command command;
        std::string error;
        ASSERT_TRUE(ParseCommand(row.line, command, error)) << row.line << ": " << error;
        EXPECT_EQ(CommandKind::kEvent, command.kind) << row.line;
        EXPECT_EQ(row.calls, Calls(command)) << row.line;
    }
}

TEST(CommandParser, BadLinesNameWhatWasExpected) {
    const struct {
        const char* line;
        const char* error;
    } rows[] = {
        {"jump", "unknown command 'jump' (try 'help')"},
        {"left 5", "expected 'left'"},
        {"zoom sideways", "expected 'zoom in|out'"},
        {"preset goto", "expected 'preset set|goto|clear N'"},
        {"preset goto two", "expected 'preset set|goto|clear N'"},
        {"raw 010", "expected 'raw VALUE'"},
        {"raw 4294967296", "expected 'raw VALUE'"},
        {"op", "expected 'op OPCODE [PARM]'"},
        {"op 1 2 3", "expected 'op OPCODE [PARM]'"},
        {"alarm pause 1 60 1", "expected 'alarm start|end ACTION OPCODE PARM'"},
        {"alarm start 1 60", "expected 'alarm start|end ACTION OPCODE PARM'"},
        {"camera 1 2", "expected 'camera DEVICES DEVICE INPUT'"},
        {"wait -1", "expected 'wait MS'"},
        {"config", "expected 'config FILE'"},
        {"quit now", "expected 'quit'"},
    };
    for (const auto& row : rows) {
        Command command;
        std::string error;
        EXPECT_FALSE(ParseCommand(row.line, command, error)) << row.line;
        EXPECT_EQ(row.error, error) << row.line;
    }
}

TEST(CommandParser, HostCommandsCarryTheirArguments) {
    Command command;
    std::string error;
    ASSERT_TRUE(ParseCommand("camera 1 2 3", command, error));
    EXPECT_EQ(CommandKind::kCamera, command.kind);
    EXPECT_EQ(1, command.camera.devicesId);
    EXPECT_EQ(2, command.camera.deviceNumber);
    EXPECT_EQ(3, command.camera.inputNumber);

    ASSERT_TRUE(ParseCommand("alarm end 7 60 2.5", command, error));
    EXPECT_EQ(CommandKind::kAlarm, command.kind);
    EXPECT_FALSE(command.alarm.start);
    EXPECT_EQ(7, command.alarm.action);
    EXPECT_EQ(60, command.alarm.call.opcode);
    EXPECT_EQ(2.5, command.alarm.call.parm);

    ASSERT_TRUE(ParseCommand("config  site one.xml ", command, error));
    EXPECT_EQ(CommandKind::kConfig, command.kind);
    EXPECT_EQ("site one.xml", command.path);

    ASSERT_TRUE(ParseCommand("wait 250", command, error));
    EXPECT_EQ(250, command.milliseconds);

    for (const char* nothing : {"", "   ", "# a comment"}) {
        ASSERT_TRUE(ParseCommand(nothing, command, error));
        EXPECT_EQ(CommandKind::kNothing, command.kind);
    }
}

TEST(EventDocuments, ReadLikeTheModuleExpectsThem) {
    const CameraKey camera{1, 2, 3};
    EXPECT_EQ("<Tarn><PTZ ID=\"1048576\"><Devices ID=\"1\"><Device Number=\"2\"><Video>"
              "<Input Number=\"3\" Opcode=\"32\" Parm=\"0\" /><Input Number=\"3\" Opcode=\"60\" Parm=\"2.5\" />"
              "</Video></Device></Devices></PTZ></Tarn>",
              EventDocument(camera, {{32, 0}, {60, 2.5}}));
    EXPECT_EQ("<Tarn><PTZ ID=\"1048576\"><Devices ID=\"1\"><Device Number=\"2\"><Video>"
              "<Input Number=\"3\" Opcode=\"60\" Parm=\"1\" Time=\"1700000000\" Milliseconds=\"42\" Action=\"7\" "
              "Alarm=\"0\" /></Video></Device></Devices></PTZ></Tarn>",
              AlarmDocument(camera, AlarmCall{false, 7, {60, 1}}, 1700000000042));
    EXPECT_EQ("<Tarn Delta=\"0\"><Serial ID=\"851968\"><Input>"
              "<Device Port=\"COM1\" Protocol=\"Pelco-D\" Use=\"2\" StreamID=\"1\" />"
              "<Device Port=\"A&amp;B&quot;\" Protocol=\"AD-M3200 Multi\" Use=\"2\" StreamID=\"2\" />"
              "</Input></Serial></Tarn>",
              SerialPortDocument({{"COM1", "Pelco-D", 1}, {"A&B\"", "AD-M3200 Multi", 2}}));
}

}  // namespace
