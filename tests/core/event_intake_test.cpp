#include "core/event_intake.h"

#include <gtest/gtest.h>

#include "support/fake_clock.h"
#include "support/fake_protocol.h"
#include "support/recording_host.h"

using namespace vorna;
using Lines = std::vector<std::string>;

namespace {

struct Fixture {
    Fixture() {
        auto made = std::make_unique<PtzCamera>();
        made->protocol = &protocol;
        made->stream = 5;
        made->devicesId = 2;
        made->deviceNumber = 3;
        made->inputNumber = 4;
        camera = made.get();
        controller.cameras.Append(std::move(made));
    }
    void Send(const std::string& inputs, bool alarmForm = false, const char* ptz = "<PTZ ID=\"1048576\">") {
        const std::string text = std::string("<Tarn>") + ptz + "<Devices ID=\"2\"><Device Number=\"3\"><Video>" +
                                 inputs + "</Video></Device></Devices></PTZ></Tarn>";
        HandleEvent(controller, text.data(), static_cast<int64_t>(text.size()), alarmForm);
    }
    vorna_test::FakeClock clock;
    vorna_test::RecordingHost host;
    vorna_test::FakeProtocol protocol;
    PtzController controller;
    PtzCamera* camera;
};

std::string Queue(const PtzCamera& camera) {
    std::string text;
    for (const QueuedCommand& e : camera.commandQueue)
        text += "[" + std::to_string(e.action) + " " + std::to_string(e.opcode) + " " + std::to_string(e.parm) +
                " " + std::to_string(e.endTime) + "]";
    return text;
}

}  // namespace

TEST(HandleEvent, ImmediateInputsRunInDocumentOrder) {
    Fixture f;
    f.Send("<Input Number=\"4\" Opcode=\"34\" Parm=\"0\"/><Input Number=\"9\" Opcode=\"34\" Parm=\"0\"/>"
           "<Input Number=\"4\" Opcode=\"60\" Parm=\"2.5\"/>");
    EXPECT_EQ(f.host.SerialPayloads(), (Lines{"Pan(1,32)", "Preset(1,2,1)"}));
    EXPECT_EQ(f.camera->activityTime, f.clock.now);
    EXPECT_TRUE(f.camera->commandQueue.empty());
}

TEST(HandleEvent, MalformedPartsAreDroppedSilently) {
    const char* const dropped[] = {
        "<Input Number=\"4\" Opcode=\"34\"/>",
        "<Input Number=\"4\" Parm=\"1\"/>",
        "<Input Opcode=\"34\" Parm=\"1\"/>",
        "<Input Number=\"0x4\" Opcode=\"34\" Parm=\"1\"/>",
        "<Input Number=\"4\" Opcode=\"34\" Parm=\"left\"/>",
        "<Inputs Number=\"4\" Opcode=\"34\" Parm=\"1\"/>",
    };
    for (const char* input : dropped) {
        Fixture f;
        f.Send(input);
        EXPECT_TRUE(f.host.sent.empty()) << input;
        EXPECT_EQ(f.camera->activityTime, kInvalidTime) << input;
    }
    const char* const badPtz[] = {"<PTZ ID=\"0x100000\">", "<PTZ ID=\"1048577\">", "<PTZ>"};
    for (const char* ptz : badPtz) {
        Fixture f;
        f.Send("<Input Number=\"4\" Opcode=\"34\" Parm=\"1\"/>", false, ptz);
        EXPECT_TRUE(f.host.sent.empty()) << ptz;
    }
    const std::string documents[] = {
        "<Event><PTZ ID=\"1048576\"><Devices ID=\"2\"><Device Number=\"3\"><Video><Input Number=\"4\" Opcode=\"34\" "
        "Parm=\"1\"/></Video></Device></Devices></PTZ></Event>",
        "<Tarn><PTZ ID=\"1048576\"><Devices ID=\"2\"><Device Number=\"3\"><Video><Input Number=\"4\" Opcode=\"34\" "
        "Parm=\"1\"/></Video></Device></Devices></PTZ>",
        "<Tarn><PTZ ID=\"1048576\"><Devices><Device Number=\"3\"><Video><Input Number=\"4\" Opcode=\"34\" "
        "Parm=\"1\"/></Video></Device></Devices></PTZ></Tarn>",
    };
    for (const std::string& text : documents) {
        Fixture f;
        HandleEvent(f.controller, text.data(), static_cast<int64_t>(text.size()), false);
        EXPECT_TRUE(f.host.sent.empty()) << text;
    }
}

TEST(HandleEvent, AlarmStartsAndEndsPairOnActionOpcodeAndExactParm) {
    Fixture f;
    const std::string start = "<Input Number=\"4\" Opcode=\"60\" Parm=\"2.5\" Time=\"0\" Milliseconds=\"0\" Action=\"7\" Alarm=\"1\"/>";
    f.Send(start + start, true);
    f.Send("<Input Number=\"4\" Opcode=\"60\" Parm=\"2.25\" Time=\"100\" Milliseconds=\"5\" Action=\"7\" Alarm=\"0\"/>"
           "<Input Number=\"4\" Opcode=\"60\" Parm=\"2.5\" Time=\"100\" Milliseconds=\"65537\" Action=\"7\" Alarm=\"0\"/>"
           "<Input Number=\"4\" Opcode=\"60\" Parm=\"2.5\" Time=\"100\" Milliseconds=\"5\" Action=\"7\" Alarm=\"2\"/>",
           true);
    EXPECT_EQ(Queue(*f.camera), "[7 60 2.500000 100001][7 60 2.500000 -1]");
    EXPECT_TRUE(f.host.sent.empty());
    EXPECT_EQ(f.camera->activityTime, kInvalidTime);
}

TEST(HandleEvent, AlarmInputsMissingAFieldAreIgnored) {
    for (const char* missing : {"Time", "Milliseconds", "Action", "Alarm"}) {
        std::string input = "<Input Number=\"4\" Opcode=\"60\" Parm=\"1\"";
        for (const char* field : {"Time", "Milliseconds", "Action", "Alarm"})
            if (std::string(field) != missing) input += std::string(" ") + field + "=\"1\"";
        input += "/>";
        Fixture f;
        f.Send(input, true);
        EXPECT_TRUE(f.camera->commandQueue.empty()) << input;
    }
}
