#include "config/config_writer.h"

#include <gtest/gtest.h>

#include "support/fake_protocol.h"
#include "support/xml_text.h"

using namespace vorna;

namespace {

std::string Print(const TiXmlDocument& document, bool stream) {
    TiXmlPrinter printer;
    if (stream) printer.SetStreamPrinting();
    document.Accept(&printer);
    return printer.Str();
}

PtzCamera& AddCamera(PtzController& controller, int devicesId, int deviceNumber, int inputNumber) {
    controller.cameras.push_back(std::make_unique<PtzCamera>());
    PtzCamera& camera = *controller.cameras.back();
    camera.devicesId = devicesId;
    camera.deviceNumber = deviceNumber;
    camera.inputNumber = inputNumber;
    return camera;
}

// Two device groups; cameras 10/1/1 and 10/1/2 share their Devices and
// Device elements, and 10/1/1 appears twice (the later values win, presets
// add up); 20/2/1 has no protocol and so 99 presets.
struct SmallConfiguration {
    SmallConfiguration() {
        auto fewPresets = std::make_unique<vorna_test::FakeProtocol>();
        fewPresets->presetCount = 3;
        fewPresets->unsupported = {"AutoIris", "Flip"};
        a = fewPresets.get();
        controller.protocols["Fake-A"] = std::move(fewPresets);
        auto noRaw = std::make_unique<vorna_test::FakeProtocol>();
        noRaw->unsupported = {"RawCommand", "AutoFocus", "ApplePeel"};
        controller.protocols["Fake-B"] = std::move(noRaw);
        controller.serialLines["COM1"] = {"Fake-A", 7};

        PtzCamera& first = AddCamera(controller, 10, 1, 1);
        first.protocol = a;
        first.serialPort = "COM1";
        first.address = 5;
        first.tourDwell = 15;
        first.tourEnabled = true;
        first.tourIdle = 30;
        // TinyXML writes a value that holds '"' between single quotes.
        first.presets = {{1, "Door"}, {2, ""}, {3, "Gate & \"Yard\""}, {4, "Above the count"}};
        first.tour = {{1, 3}, {2, 1}, {3, 2}, {4, 9}, {5, 3}};

        PtzCamera& far = AddCamera(controller, 20, 2, 1);
        far.serialPort = "COM9";
        far.presets = {{50, "Far"}, {100, "Beyond"}};
        far.tour = {{1, 50}};

        PtzCamera& second = AddCamera(controller, 10, 1, 2);
        second.protocol = a;
        second.serialPort = "COM1";
        second.address = 6;

        PtzCamera& again = AddCamera(controller, 10, 1, 1);
        again.serialPort = "COM1";
        again.address = 8;
        again.presets = {{1, "Door again"}, {2, "Second"}};
        again.tour = {{7, 2}};
    }

    PtzController controller;
    CProtocol* a;
};

const char* const kSmallConfigurationFile =
    "<?xml ?>\n"
    "<Tarn Delta=\"0\">\n"
    "    <PTZ ID=\"1048576\" OPCODE_MAX=\"74\">\n"
    "        <Devices ID=\"10\">\n"
    "            <Device Number=\"1\">\n"
    "                <Input Number=\"1\" Protocol=\"Fake-A\" SerialPort=\"COM1\" Address=\"8\" "
    "Presets=\"99\" TourDwell=\"10\" TourEnabled=\"0\" TourIdle=\"60\">\n"
    "                    <Preset Number=\"1\" Name=\"Door again\">\n"
    "                        <Tour Position=\"2\" />\n"
    "                    </Preset>\n"
    "                    <Preset Number=\"3\" Name='Gate &amp; &quot;Yard&quot;'>\n"
    "                        <Tour Position=\"1\" />\n"
    "                        <Tour Position=\"5\" />\n"
    "                    </Preset>\n"
    "                    <Preset Number=\"2\" Name=\"Second\">\n"
    "                        <Tour Position=\"7\" />\n"
    "                    </Preset>\n"
    "                </Input>\n"
    "                <Input Number=\"2\" Protocol=\"Fake-A\" SerialPort=\"COM1\" Address=\"6\" "
    "Presets=\"3\" TourDwell=\"10\" TourEnabled=\"0\" TourIdle=\"60\" />\n"
    "            </Device>\n"
    "        </Devices>\n"
    "        <Devices ID=\"20\">\n"
    "            <Device Number=\"2\">\n"
    "                <Input Number=\"1\" Protocol=\"\" SerialPort=\"COM9\" Address=\"1\" Presets=\"99\" "
    "TourDwell=\"10\" TourEnabled=\"0\" TourIdle=\"60\">\n"
    "                    <Preset Number=\"50\" Name=\"Far\">\n"
    "                        <Tour Position=\"1\" />\n"
    "                    </Preset>\n"
    "                </Input>\n"
    "            </Device>\n"
    "        </Devices>\n"
    "        <Protocol Name=\"Fake-A\" Presets=\"3\" MinAddress=\"0\" MaxAddress=\"255\" AutoFocus=\"1\" "
    "AutoIris=\"0\" ArbCmd=\"1\" Menu=\"0\" Flip=\"0\" ApplePeel=\"1\" Delay=\"0\" Pattern=\"0\" />\n"
    "        <Protocol Name=\"Fake-B\" Presets=\"32\" MinAddress=\"0\" MaxAddress=\"255\" AutoFocus=\"0\" "
    "AutoIris=\"1\" ArbCmd=\"0\" Menu=\"0\" Flip=\"1\" ApplePeel=\"0\" Delay=\"0\" Pattern=\"0\" />\n"
    "    </PTZ>\n"
    "</Tarn>\n";

}  // namespace

TEST(ConfigWriter, SmallConfigurationAsFileAndNotice) {
    SmallConfiguration configuration;
    TiXmlDocument document;
    BuildConfigDocument(configuration.controller, document);
    EXPECT_EQ(Print(document, false), kSmallConfigurationFile);
    EXPECT_EQ(Print(document, true), vorna_test::Flattened(kSmallConfigurationFile));
}

// Every protocol the table holds is published with its own answers, in the
// table's byte-wise name order.
TEST(ConfigWriter, PublishesEveryRegisteredProtocol) {
    PtzController controller;
    FillProtocolTable(controller.protocols);
    ASSERT_FALSE(controller.protocols.empty());
    TiXmlDocument document;
    BuildConfigDocument(controller, document);
    const TiXmlElement* element = document.RootElement()->FirstChildElement("PTZ")->FirstChildElement("Protocol");
    for (auto& entry : controller.protocols) {
        ASSERT_NE(element, nullptr) << entry.first;
        CProtocol& protocol = *entry.second;
        const std::string expected =
            "<Protocol Name=\"" + entry.first + "\" Presets=\"" + std::to_string(protocol.GetPresetCount()) +
            "\" MinAddress=\"" + std::to_string(protocol.GetMinAddress()) + "\" MaxAddress=\"" +
            std::to_string(protocol.GetMaxAddress()) + "\" AutoFocus=\"" + std::to_string(protocol.CanAutoFocus()) +
            "\" AutoIris=\"" + std::to_string(protocol.CanAutoIris()) + "\" ArbCmd=\"" +
            std::to_string(!protocol.RawCommand(1, 1).empty()) + "\" Menu=\"" +
            std::to_string(protocol.GetMenuType()) + "\" Flip=\"" + std::to_string(protocol.CanFlip()) +
            "\" ApplePeel=\"" + std::to_string(protocol.CanApplePeel()) + "\" Delay=\"0\" Pattern=\"" +
            std::to_string(protocol.GetPatternType()) + "\" />";
        TiXmlPrinter printer;
        printer.SetStreamPrinting();
        element->Accept(&printer);
        EXPECT_EQ(printer.Str(), expected);
        element = element->NextSiblingElement("Protocol");
    }
    EXPECT_EQ(element, nullptr);
}
