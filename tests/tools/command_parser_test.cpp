#include "command_parser.h"

#include <gtest/gtest.h>

using namespace vorna_host;

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

    ASSERT_TRUE(ParseCommand("config  site one.xml ", command, error));
    EXPECT_EQ(CommandKind::kConfig, command.kind);
    EXPECT_EQ("site one.xml", command.path);
}

TEST(EventDocuments, ReadLikeTheModuleExpectsThem) {
    const CameraKey camera{1, 2, 3};
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
