#include "config/config_apply.h"

#include <gtest/gtest.h>

#include "support/fake_protocol.h"
#include "support/recording_host.h"

using namespace vorna;
using Lines = std::vector<std::string>;

namespace {

// A camera section of an update: `inputs` under Devices 1 / Device 1.
std::string Cameras(const std::string& inputs, const char* delta = " Delta=\"1\"") {
    return std::string("<Tarn") + delta + "><PTZ ID=\"1048576\"><Devices ID=\"1\"><Device Number=\"1\">" + inputs +
           "</Device></Devices></PTZ></Tarn>";
}

// A serial section of an update: `devices` under one Input.
std::string Serial(const std::string& devices) {
    return "<Tarn Delta=\"0\"><Serial ID=\"851968\"><Input>" + devices + "</Input></Serial></Tarn>";
}

// Camera 1/1/1 on COM1 (protocol A) with two named presets on a two-step tour.
const std::string kDoorCamera = Cameras(
    "<Input Number=\"1\" SerialPort=\"COM1\" Address=\"5\" TourDwell=\"12\" TourEnabled=\"1\">"
    "<Preset Number=\"1\" Name=\"Door\"><Tour Position=\"1\"/></Preset>"
    "<Preset Number=\"2\" Name=\"Gate\"><Tour Position=\"2\"/></Preset></Input>");

struct Step {
    bool fromFile;
    std::string text;
};

Step Update(const std::string& text) { return {false, text}; }
Step File(const std::string& text) { return {true, text}; }

struct Fixture {
    Fixture() {
        controller.protocols["A"] = std::make_unique<vorna_test::FakeProtocol>();
        controller.protocols["B"] = std::make_unique<vorna_test::FakeProtocol>();
        controller.serialLines["COM1"] = {"A", 7};
        controller.serialLines["COM2"] = {"B", 8};
        controller.serialLines["COM3"] = {"Gone", 9};
    }

    bool Apply(const Step& step) {
        XmlDocument document;
        EXPECT_TRUE(document.ParseText(step.text.data(), step.text.size())) << step.text;
        return ApplyConfiguration(controller, document, step.fromFile);
    }

    std::string ProtocolName(const CProtocol* protocol) const {
        for (const auto& entry : controller.protocols)
            if (entry.second.get() == protocol) return entry.first;
        return "-";
    }

    // "1/1/1 COM1@5 A s7 d12 on i60 P{1:Door} T{1:1}" per camera, in table order.
    Lines Cameras() const {
        Lines lines;
        for (const auto& c : controller.cameras) {
            std::string line = std::to_string(c->devicesId) + "/" + std::to_string(c->deviceNumber) + "/" +
                               std::to_string(c->inputNumber) + " " + c->serialPort + "@" +
                               std::to_string(c->address) + " " + ProtocolName(c->protocol) + " s" +
                               std::to_string(c->stream) + " d" + std::to_string(c->tourDwell) +
                               (c->tourEnabled ? " on" : " off") + " i" + std::to_string(c->tourIdle) + " P{";
            for (const auto& p : c->presets) line += std::to_string(p.first) + ":" + p.second + ",";
            line += "} T{";
            for (const auto& t : c->tour) line += std::to_string(t.first) + ":" + std::to_string(t.second) + ",";
            lines.push_back(line + "}");
        }
        return lines;
    }

    // "COM1=A/7" per serial line.
    std::string SerialLines() const {
        std::string text;
        for (const auto& line : controller.serialLines)
            text += line.first + "=" + line.second.protocolName + "/" + std::to_string(line.second.stream) + " ";
        return text;
    }

    Lines Logs() const {
        Lines logs;
        for (const auto& m : host.OfType(VORNA_TYPE_LOG)) logs.push_back(m.payload);
        return logs;
    }

    vorna_test::RecordingHost host;
    PtzController controller;
};

const char* const kDoor = "1/1/1 COM1@5 A s7 d12 on i60 P{1:Door,2:Gate,} T{1:1,2:2,}";
const char* const kLines = "COM1=A/7 COM2=B/8 COM3=Gone/9 ";

struct Row {
    const char* name;
    std::vector<Step> setup;
    Step step;
    bool applied;
    Lines cameras;
    Lines logs;
    const char* serialLines;
};

}  // namespace

TEST(ConfigApply, Rules) {
    const std::vector<Row> rows = {
        {"Delta missing: rejected whole", {}, Update(Cameras("<Input Number=\"1\"/>", "")), false, {},
         {"<log_msg level=\"75\">Query delta attribute error </log_msg>"}, kLines},
        {"Delta not an integer", {}, Update(Cameras("<Input Number=\"1\"/>", " Delta=\"x\"")), false, {},
         {"<log_msg level=\"75\">Query delta attribute error </log_msg>"}, kLines},
        {"Delta 0 reads only the serial section", {Update(kDoorCamera)},
         Update("<Tarn Delta=\"0\"><PTZ ID=\"1048576\"><Devices ID=\"1\"><Device Number=\"1\"><Input Number=\"2\"/>"
                "</Device></Devices></PTZ><Serial ID=\"851968\"><Input><Device Port=\"COM1\" Protocol=\"B\" "
                "Use=\"2\" StreamID=\"4\"/></Input></Serial></Tarn>"),
         true, {"1/1/1 COM1@5 B s4 d12 on i60 P{} T{1:1,2:2,}"}, {}, "COM1=B/4 COM2=B/8 COM3=Gone/9 "},
        {"Delta 1 reads only the camera section", {},
         Update("<Tarn Delta=\"1\"><Serial ID=\"851968\"><Input><Device Port=\"COM1\" Protocol=\"B\" Use=\"2\"/>"
                "</Input></Serial><PTZ ID=\"1048576\"><Devices ID=\"1\"><Device Number=\"1\"><Input Number=\"2\"/>"
                "</Device></Devices></PTZ></Tarn>"),
         true, {"1/1/2 @1 - s0 d10 off i60 P{} T{}"}, {}, kLines},
        {"the file never reads a serial section", {},
         File("<Tarn><Serial ID=\"851968\"><Input><Device Port=\"COM1\" Protocol=\"B\" Use=\"2\"/></Input></Serial>"
              "</Tarn>"),
         false, {}, {}, kLines},
        {"PTZ ID in hexadecimal is skipped", {},
         Update("<Tarn Delta=\"1\"><PTZ ID=\"0x100000\"><Devices ID=\"1\"><Device Number=\"1\"><Input Number=\"1\"/>"
                "</Device></Devices></PTZ></Tarn>"),
         false, {}, {}, kLines},
        {"Input without Number changes nothing", {}, Update(Cameras("<Input SerialPort=\"COM1\" Address=\"3\"/>")),
         false, {}, {}, kLines},
        {"SerialPort none in any case deletes", {Update(kDoorCamera)},
         Update(Cameras("<Input Number=\"1\" SerialPort=\"NoNe\" Address=\"9\"/>")), true, {}, {}, kLines},
        {"empty SerialPort keeps port and address", {Update(kDoorCamera)},
         Update(Cameras("<Input Number=\"1\" SerialPort=\"\" Address=\"9\" TourDwell=\"3\"/>")), true,
         {"1/1/1 COM1@5 A s7 d3 on i60 P{} T{}"}, {}, kLines},
        {"bad Address keeps port and address", {Update(kDoorCamera)},
         Update(Cameras("<Input Number=\"1\" SerialPort=\"COM2\" Address=\"x\"/>")), true,
         {"1/1/1 COM1@5 A s7 d12 on i60 P{} T{1:1,2:2,}"}, {}, kLines},
        {"unknown port in an update logs and deletes", {Update(kDoorCamera)},
         Update(Cameras("<Input Number=\"1\" SerialPort=\"COM9\" Address=\"5\"/>")), true, {},
         {"<log_msg level=\"50\">ptz camera serial port COM9 not found</log_msg>"}, kLines},
        {"port names are case-sensitive", {Update(kDoorCamera)},
         Update(Cameras("<Input Number=\"1\" SerialPort=\"com1\" Address=\"5\"/>")), true, {},
         {"<log_msg level=\"50\">ptz camera serial port com1 not found</log_msg>"}, kLines},
        {"unknown protocol in an update logs and deletes", {},
         Update(Cameras("<Input Number=\"1\" SerialPort=\"COM3\" Address=\"5\"/>")), true, {},
         {"<log_msg level=\"50\">ptz camera protocol Gone not found</log_msg>"}, kLines},
        {"unknown port from the file keeps the camera", {},
         File(Cameras("<Input Number=\"1\" SerialPort=\"COM9\" Address=\"4\"><Preset Number=\"3\" Name=\"Yard\"/>"
                      "</Input>")),
         true, {"1/1/1 COM9@4 - s0 d10 off i60 P{3:Yard,} T{}"}, {}, kLines},
        {"unknown protocol from the file keeps the old protocol", {Update(kDoorCamera)},
         File(Cameras("<Input Number=\"1\" SerialPort=\"COM3\" Address=\"4\"/>")), true,
         {"1/1/1 COM3@4 A s7 d12 on i60 P{} T{1:1,2:2,}"}, {}, kLines},
        {"tour toggle keeps presets and tour", {Update(kDoorCamera)},
         Update(Cameras("<Input Number=\"1\" TourEnabled=\"0\"/>")), true,
         {"1/1/1 COM1@5 A s7 d12 off i60 P{1:Door,2:Gate,} T{1:1,2:2,}"}, {}, kLines},
        {"tour toggle with an empty Preset clears both", {Update(kDoorCamera)},
         Update(Cameras("<Input Number=\"1\" TourEnabled=\"0\"><Preset/></Input>")), true,
         {"1/1/1 COM1@5 A s7 d12 off i60 P{} T{}"}, {}, kLines},
        {"tour toggle shape from the file rewrites presets", {Update(kDoorCamera)},
         File(Cameras("<Input Number=\"1\" TourEnabled=\"0\"/>")), true,
         {"1/1/1 COM1@5 A s7 d12 off i60 P{} T{}"}, {}, kLines},
        {"TourEnabled other than 1 is off and rebuilds the tour", {Update(kDoorCamera)},
         Update(Cameras("<Input Number=\"1\" Address=\"6\" TourEnabled=\"7\"><Preset Number=\"4\" Name=\"Dock\">"
                        "<Tour Position=\"9\"/></Preset></Input>")),
         true, {"1/1/1 COM1@5 A s7 d12 off i60 P{4:Dock,} T{9:4,}"}, {}, kLines},
        {"presets without tour data leave the tour", {Update(kDoorCamera)},
         Update(Cameras("<Input Number=\"1\" Address=\"6\"><Preset Number=\"4\" Name=\"Dock\"><Tour Position=\"9\"/>"
                        "</Preset></Input>")),
         true, {"1/1/1 COM1@5 A s7 d12 on i60 P{4:Dock,} T{1:1,2:2,}"}, {}, kLines},
        {"preset and tour filtering", {},
         Update(Cameras("<Input Number=\"1\" TourIdle=\"30\">"
                        "<Preset Number=\"5\"><Tour Position=\"1\"/></Preset>"
                        "<Preset Number=\"0\" Name=\"Zero\"><Tour Position=\"3\"/><Tour Position=\"2\"/></Preset>"
                        "<Preset Number=\"x\" Name=\"Bad\"><Tour Position=\"3\"/></Preset>"
                        "<Preset Number=\"6\" Name=\"Six\"><Tour Position=\"0\"/><Tour Position=\"y\"/>"
                        "<Tour Position=\"4\"/><Tour Position=\"2\"/></Preset></Input>")),
         true, {"1/1/1 @1 - s0 d10 off i30 P{6:Six,} T{2:6,3:0,4:6,}"}, {}, kLines},
        {"a later duplicate Input wins", {},
         Update(Cameras("<Input Number=\"1\" SerialPort=\"COM1\" Address=\"5\"/>"
                        "<Input Number=\"1\" SerialPort=\"COM2\" Address=\"6\"/>")),
         true, {"1/1/1 COM2@6 B s8 d10 off i60 P{} T{}"}, {}, kLines},
        {"serial rebinding to the same protocol keeps preset names", {Update(kDoorCamera)},
         Update(Serial("<Device Port=\"COM1\" Protocol=\"A\" Use=\"2\" StreamID=\"9\"/>")), true,
         {"1/1/1 COM1@5 A s9 d12 on i60 P{1:Door,2:Gate,} T{1:1,2:2,}"}, {}, "COM1=A/9 COM2=B/8 COM3=Gone/9 "},
        {"serial Use not 2 deletes cameras and keeps the line", {Update(kDoorCamera)},
         Update(Serial("<Device Port=\"COM1\" Protocol=\"B\" Use=\"1\"/>")), true, {}, {}, kLines},
        {"serial without Protocol deletes cameras", {Update(kDoorCamera)},
         Update(Serial("<Device Port=\"COM1\" Use=\"2\"/>")), true, {}, {}, kLines},
        {"serial unknown protocol logs, drops the line, deletes cameras", {Update(kDoorCamera)},
         Update(Serial("<Device Port=\"COM1\" Protocol=\"Pelco-Z\" Use=\"2\"/>")), true, {},
         {"<log_msg level=\"50\">Pelco-Z ptz protocol not available</log_msg>"}, "COM2=B/8 COM3=Gone/9 "},
        {"serial matching no camera changes the map but applies nothing", {Update(kDoorCamera)},
         Update(Serial("<Device Port=\"com1\" Protocol=\"B\" Use=\"2\" StreamID=\"3\"/><Device Protocol=\"B\" "
                       "Use=\"2\"/>")),
         false, {kDoor}, {}, "COM1=A/7 COM2=B/8 COM3=Gone/9 com1=B/3 "},
        {"serial: the later device for a port wins", {Update(kDoorCamera)},
         Update(Serial("<Device Port=\"COM1\" Protocol=\"B\" Use=\"2\" StreamID=\"3\"/>"
                       "<Device Port=\"COM1\" Protocol=\"A\" Use=\"2\" StreamID=\"4\"/>")),
         true, {"1/1/1 COM1@5 A s4 d12 on i60 P{} T{1:1,2:2,}"}, {}, "COM1=A/4 COM2=B/8 COM3=Gone/9 "},
        {"binding a camera from the file keeps its preset names",
         {File(Cameras("<Input Number=\"1\" SerialPort=\"COM5\" Address=\"2\"><Preset Number=\"1\" Name=\"Door\"/>"
                       "</Input>"))},
         Update(Serial("<Device Port=\"COM5\" Protocol=\"A\" Use=\"2\" StreamID=\"6\"/>")), true,
         {"1/1/1 COM5@2 A s6 d10 off i60 P{1:Door,} T{}"}, {}, "COM1=A/7 COM2=B/8 COM3=Gone/9 COM5=A/6 "},
    };
    for (const Row& row : rows) {
        Fixture fixture;
        for (const Step& step : row.setup) fixture.Apply(step);
        fixture.host.sent.clear();
        EXPECT_EQ(fixture.Apply(row.step), row.applied) << row.name;
        EXPECT_EQ(fixture.Cameras(), row.cameras) << row.name;
        EXPECT_EQ(fixture.Logs(), row.logs) << row.name;
        EXPECT_EQ(fixture.SerialLines(), row.serialLines) << row.name;
    }
}

TEST(ConfigApply, CameraOrderAndKeysSurviveUpdates) {
    Fixture fixture;
    fixture.Apply(Update(Cameras("<Input Number=\"2\" TourIdle=\"5\"/><Input Number=\"1\" TourIdle=\"6\"/>")));
    fixture.Apply(Update(Cameras("<Input Number=\"2\" SerialPort=\"none\"/><Input Number=\"2\" TourIdle=\"7\"/>")));
    EXPECT_EQ(fixture.Cameras(), (Lines{"1/1/1 @1 - s0 d10 off i6 P{} T{}", "1/1/2 @1 - s0 d10 off i7 P{} T{}"}));
}
