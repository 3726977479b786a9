#include "config/config_apply.h"

#include <gtest/gtest.h>

#include <sstream>

#include "support/fake_protocol.h"
#include "support/recording_host.h"

using namespace vorna;
using Lines = std::vector<std::string>;

namespace {

// A document with `Delta` (none when empty) around `sections`.
std::string Tarn(const std::string& delta, const std::string& sections) {
    return "<Tarn" + (delta.empty() ? "" : " Delta=\"" + delta + "\"") + ">" + sections + "</Tarn>";
}

// A camera section: `inputs` under Devices 1 / Device 1.
std::string Ptz(const std::string& inputs, const std::string& id = "1048576") {
    return "<PTZ ID=\"" + id + "\"><Devices ID=\"1\"><Device Number=\"1\">" + inputs + "</Device></Devices></PTZ>";
}

// A serial section: `devices` under one Input.
std::string SerialSection(const std::string& devices) {
    return "<Serial ID=\"851968\"><Input>" + devices + "</Input></Serial>";
}

std::string Cameras(const std::string& inputs) { return Tarn("1", Ptz(inputs)); }
std::string Serial(const std::string& devices) { return Tarn("0", SerialSection(devices)); }

std::string Log(int level, const std::string& text) {
    return "<log_msg level=\"" + std::to_string(level) + "\">" + text + "</log_msg>";
}

struct Step {
    bool fromFile;
    std::string text;
};

Step Update(const std::string& text) { return {false, text}; }
Step File(const std::string& text) { return {true, text}; }

// Camera 1/1/1 on COM1 (protocol A) with two named presets on a two-step tour.
const Step kDoor = Update(Cameras(
    R"(<Input Number="1" SerialPort="COM1" Address="5" TourDwell="12" TourEnabled="1">)"
    R"(<Preset Number="1" Name="Door"><Tour Position="1"/></Preset>)"
    R"(<Preset Number="2" Name="Gate"><Tour Position="2"/></Preset></Input>)"));
const char* const kLines = "COM1=A/7 COM2=B/8 COM3=Gone/9 ";

struct Fixture {
    Fixture() {
        a = (controller.protocols["A"] = std::make_unique<vorna_test::FakeProtocol>()).get();
        controller.protocols["B"] = std::make_unique<vorna_test::FakeProtocol>();
        controller.serialLines = {{"COM1", {"A", 7}}, {"COM2", {"B", 8}}, {"COM3", {"Gone", 9}}};
    }

    bool Apply(const Step& step) {
        XmlDocument document;
        EXPECT_TRUE(document.ParseText(step.text.data(), step.text.size())) << step.text;
        return ApplyConfiguration(controller, document, step.fromFile);
    }

    // "1/1/1 COM1@5 A s7 d12 on i60 P{1:Door,} T{1:1,}" per camera, in table order.
    Lines Cameras() const {
        Lines lines;
        for (const auto& c : controller.cameras) {
            std::ostringstream line;
            line << c->devicesId << '/' << c->deviceNumber << '/' << c->inputNumber << ' ' << c->serialPort << '@'
                 << c->address << ' ' << (c->protocol == nullptr ? "-" : c->protocol == a ? "A" : "B") << " s"
                 << c->stream << " d" << c->tourDwell << (c->tourEnabled ? " on" : " off") << " i" << c->tourIdle
                 << " P{";
            for (const auto& p : c->presets) line << p.first << ':' << p.second << ',';
            line << "} T{";
            for (const auto& t : c->tour) line << t.first << ':' << t.second << ',';
            lines.push_back(line.str() + "}");
        }
        return lines;
    }

    vorna_test::RecordingHost host;
    PtzController controller;
    CProtocol* a;
};

struct Row {
    const char* name;
    std::vector<Step> setup;
    Step step;
    bool applied;
    Lines cameras;
    Lines logs = {};
    const char* serialLines = kLines;
};

}  // namespace

TEST(ConfigApply, Rules) {
    const std::vector<Row> rows = {
        {"Delta missing: rejected whole", {}, Update(Tarn("", Ptz(R"(<Input Number="1"/>)"))), false, {},
         {Log(75, "Query delta attribute error ")}},
        {"Delta 0 reads only the serial section", {kDoor},
         Update(Tarn("0", Ptz(R"(<Input Number="2"/>)") +
                              SerialSection(R"(<Device Port="COM1" Protocol="B" Use="2" StreamID="4"/>)"))),
         true, {"1/1/1 COM1@5 B s4 d12 on i60 P{} T{1:1,2:2,}"}, {}, "COM1=B/4 COM2=B/8 COM3=Gone/9 "},
        {"Delta 1 reads only the camera section", {},
         Update(Tarn("1", SerialSection(R"(<Device Port="COM1" Protocol="B" Use="2"/>)") +
                              Ptz(R"(<Input Number="2"/>)"))),
         true, {"1/1/2 @1 - s0 d10 off i60 P{} T{}"}},
        {"the file never reads a serial section", {},
         File(Tarn("", SerialSection(R"(<Device Port="COM1" Protocol="B" Use="2"/>)"))), false, {}},
        {"PTZ ID in hexadecimal is skipped", {}, Update(Tarn("1", Ptz(R"(<Input Number="1"/>)", "0x100000"))), false,
         {}},
        {"SerialPort none in any case deletes", {kDoor},
         Update(Cameras(R"(<Input Number="1" SerialPort="NoNe" Address="9"/>)")), true, {}},
        {"bad Address keeps port and address", {kDoor},
         Update(Cameras(R"(<Input Number="1" SerialPort="COM2" Address="x"/>)")), true,
         {"1/1/1 COM1@5 A s7 d12 on i60 P{} T{1:1,2:2,}"}},
        {"unknown port (names are case-sensitive) in an update logs and deletes", {kDoor},
         Update(Cameras(R"(<Input Number="1" SerialPort="com1" Address="5"/>)")), true, {},
         {Log(50, "ptz camera serial port com1 not found")}},
        {"unknown protocol in an update logs and deletes", {},
         Update(Cameras(R"(<Input Number="1" SerialPort="COM3" Address="5"/>)")), true, {},
         {Log(50, "ptz camera protocol Gone not found")}},
        {"unknown port from the file keeps the camera", {},
         File(Cameras(R"(<Input Number="1" SerialPort="COM9" Address="4"><Preset Number="3" Name="Yard"/></Input>)")),
         true, {"1/1/1 COM9@4 - s0 d10 off i60 P{3:Yard,} T{}"}},
        {"unknown protocol from the file keeps the old protocol", {kDoor},
         File(Cameras(R"(<Input Number="1" SerialPort="COM3" Address="4"/>)")), true,
         {"1/1/1 COM3@4 A s7 d12 on i60 P{} T{1:1,2:2,}"}},
        {"tour toggle keeps presets and tour", {kDoor}, Update(Cameras(R"(<Input Number="1" TourEnabled="0"/>)")),
         true, {"1/1/1 COM1@5 A s7 d12 off i60 P{1:Door,2:Gate,} T{1:1,2:2,}"}},
        {"tour toggle with an empty Preset clears both", {kDoor},
         Update(Cameras(R"(<Input Number="1" TourEnabled="0"><Preset/></Input>)")), true,
         {"1/1/1 COM1@5 A s7 d12 off i60 P{} T{}"}},
        {"tour toggle shape from the file rewrites presets", {kDoor},
         File(Cameras(R"(<Input Number="1" TourEnabled="0"/>)")), true, {"1/1/1 COM1@5 A s7 d12 off i60 P{} T{}"}},
        {"Address without SerialPort is ignored; TourEnabled other than 1 is off and rebuilds the tour", {kDoor},
         Update(Cameras(
             R"(<Input Number="1" Address="6" TourEnabled="7"><Preset Number="4" Name="Dock"><Tour Position="9"/>)"
             R"(</Preset></Input>)")),
         true, {"1/1/1 COM1@5 A s7 d12 off i60 P{4:Dock,} T{9:4,}"}},
        {"presets without tour data leave the tour", {kDoor},
         Update(Cameras(R"(<Input Number="1"><Preset Number="4" Name="Dock"><Tour Position="9"/></Preset></Input>)")),
         true, {"1/1/1 COM1@5 A s7 d12 on i60 P{4:Dock,} T{1:1,2:2,}"}},
        {"preset and tour filtering", {},
         Update(Cameras(R"(<Input Number="1" TourIdle="30"><Preset Number="5"><Tour Position="1"/></Preset>)"
                        R"(<Preset Number="0" Name="Zero"><Tour Position="3"/><Tour Position="2"/></Preset>)"
                        R"(<Preset Number="x" Name="Bad"><Tour Position="3"/></Preset>)"
                        R"(<Preset Number="6" Name="Six"><Tour Position="0"/><Tour Position="y"/>)"
                        R"(<Tour Position="4"/><Tour Position="2"/></Preset></Input>)")),
         true, {"1/1/1 @1 - s0 d10 off i30 P{6:Six,} T{2:6,3:0,4:6,}"}},
        {"a deleted camera comes back at the end; the later of two Inputs wins",
         {Update(Cameras(R"(<Input Number="2" TourIdle="5"/><Input Number="1" TourIdle="6"/>)"))},
         Update(Cameras(R"(<Input Number="2" SerialPort="none"/><Input Number="2" TourIdle="7"/>)"
                        R"(<Input Number="2" SerialPort="COM2" Address="6"/>)")),
         true, {"1/1/1 @1 - s0 d10 off i6 P{} T{}", "1/1/2 COM2@6 B s8 d10 off i7 P{} T{}"}},
        {"serial rebinding to the same protocol keeps preset names", {kDoor},
         Update(Serial(R"(<Device Port="COM1" Protocol="A" Use="2" StreamID="9"/>)")), true,
         {"1/1/1 COM1@5 A s9 d12 on i60 P{1:Door,2:Gate,} T{1:1,2:2,}"}, {}, "COM1=A/9 COM2=B/8 COM3=Gone/9 "},
        {"serial Use not 2, or no Protocol, deletes cameras and keeps the line", {kDoor},
         Update(Serial(R"(<Device Port="COM1" Protocol="B" Use="1"/><Device Port="COM1" Use="2"/>)")), true, {}},
        {"serial unknown protocol logs, drops the line, deletes cameras", {kDoor},
         Update(Serial(R"(<Device Port="COM1" Protocol="Pelco-Z" Use="2"/>)")), true, {},
         {Log(50, "Pelco-Z ptz protocol not available")}, "COM2=B/8 COM3=Gone/9 "},
        {"serial matching no camera changes the map but applies nothing", {kDoor},
         Update(Serial(R"(<Device Port="com1" Protocol="B" Use="2" StreamID="3"/><Device Protocol="B" Use="2"/>)")),
         false, {"1/1/1 COM1@5 A s7 d12 on i60 P{1:Door,2:Gate,} T{1:1,2:2,}"}, {},
         "COM1=A/7 COM2=B/8 COM3=Gone/9 com1=B/3 "},
        {"serial: the later device for a port wins", {kDoor},
         Update(Serial(R"(<Device Port="COM1" Protocol="B" Use="2" StreamID="3"/>)"
                       R"(<Device Port="COM1" Protocol="A" Use="2" StreamID="4"/>)")),
         true, {"1/1/1 COM1@5 A s4 d12 on i60 P{} T{1:1,2:2,}"}, {}, "COM1=A/4 COM2=B/8 COM3=Gone/9 "},
        {"Latin-1 port and preset names are stored as UTF-8, UTF-8 ones as they came", {},
         Update(Tarn("1", Ptz("<Input Number=\"1\" SerialPort=\"COM\xB9\" Address=\"2\"/>"
                              "<Input Number=\"2\"><Preset Number=\"1\" Name=\"Entr\xE9" "e\"/>"
                              "<Preset Number=\"2\" Name=\"Entr\xC3\xA9" "e\"/></Input>"))),
         true, {"1/1/2 @1 - s0 d10 off i60 P{1:Entr\xC3\xA9" "e,2:Entr\xC3\xA9" "e,} T{}"},
         {Log(50, "ptz camera serial port COM\xC2\xB9 not found")}},
        {"binding a camera from the file keeps its preset names",
         {File(Cameras(R"(<Input Number="1" SerialPort="COM5" Address="2"><Preset Number="1" Name="Door"/></Input>)"))},
         Update(Serial(R"(<Device Port="COM5" Protocol="A" Use="2" StreamID="6"/>)")), true,
         {"1/1/1 COM5@2 A s6 d10 off i60 P{1:Door,} T{}"}, {}, "COM1=A/7 COM2=B/8 COM3=Gone/9 COM5=A/6 "},
    };
    for (const Row& row : rows) {
        Fixture fixture;
        for (const Step& step : row.setup) fixture.Apply(step);
        fixture.host.sent.clear();
        EXPECT_EQ(fixture.Apply(row.step), row.applied) << row.name;
        EXPECT_EQ(fixture.Cameras(), row.cameras) << row.name;
        Lines logs;
        for (const auto& m : fixture.host.OfType(VORNA_TYPE_LOG)) logs.push_back(m.payload);
        EXPECT_EQ(logs, row.logs) << row.name;
        std::string lines;  // "COM1=A/7 " per serial line
        for (const auto& line : fixture.controller.serialLines)
            lines += line.first + "=" + line.second.protocolName + "/" + std::to_string(line.second.stream) + " ";
        EXPECT_EQ(lines, row.serialLines) << row.name;
    }
}
