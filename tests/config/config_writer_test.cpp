#include "config/config_writer.h"

#include <gtest/gtest.h>

#include "support/fake_protocol.h"
#include "support/xml_text.h"

using namespace vorna;

namespace {

// A protocol whose menu, delay and pattern differ from the interface's defaults.
struct MenuProtocol : vorna_test::FakeProtocol {
    int GetMenuType() const override { return 2; }
    int GetDelay() const override { return 3; }
    int GetPatternType() const override { return 4; }
};

PtzCamera& AddCamera(PtzController& controller, int devicesId, int deviceNumber, int inputNumber,
                     const char* serialPort, uint32_t address, CProtocol* protocol = nullptr) {
    auto made = std::make_unique<PtzCamera>();
    made->devicesId = devicesId;
    made->deviceNumber = deviceNumber;
    made->inputNumber = inputNumber;
    PtzCamera& camera = controller.cameras.Append(std::move(made));
    camera.serialPort = serialPort;
    camera.address = address;
    camera.protocol = protocol;
    return camera;
}

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
    "Presets=\"3\" TourDwell=\"15\" TourEnabled=\"1\" TourIdle=\"30\" />\n"
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
    "AutoIris=\"1\" ArbCmd=\"0\" Menu=\"2\" Flip=\"1\" ApplePeel=\"0\" Delay=\"3\" Pattern=\"4\" />\n"
    "    </PTZ>\n"
    "</Tarn>\n";

}  // namespace

// Two device groups; cameras 10/1/1 and 10/1/2 share their Devices and Device
// elements, and 10/1/1 appears twice (the later values win, presets add up);
// 20/2/1 has no protocol and so 99 presets.
TEST(ConfigWriter, SmallConfigurationAsFileAndNotice) {
    PtzController controller;
    auto fewPresets = std::make_unique<vorna_test::FakeProtocol>();
    fewPresets->presetCount = 3;
    fewPresets->unsupported = {"AutoIris", "Flip"};
    CProtocol* a = fewPresets.get();
    controller.protocols["Fake-A"] = std::move(fewPresets);
    auto menu = std::make_unique<MenuProtocol>();
    menu->unsupported = {"RawCommand", "AutoFocus", "ApplePeel"};
    controller.protocols["Fake-B"] = std::move(menu);
    controller.serialLines["COM1"] = {"Fake-A", 7};

    PtzCamera& first = AddCamera(controller, 10, 1, 1, "COM1", 5, a);
    // TinyXML writes a value that holds '"' between single quotes.
    first.presets = {{1, "Door"}, {2, ""}, {3, "Gate & \"Yard\""}, {4, "Above the count"}};
    first.tour = {{1, 3}, {2, 1}, {3, 2}, {4, 9}, {5, 3}};
    PtzCamera& far = AddCamera(controller, 20, 2, 1, "COM9", 1);
    far.presets = {{50, "Far"}, {100, "Beyond"}};
    far.tour = {{1, 50}};
    PtzCamera& second = AddCamera(controller, 10, 1, 2, "COM1", 6, a);
    second.tourDwell = 15;
    second.tourEnabled = true;
    second.tourIdle = 30;
    PtzCamera& again = AddCamera(controller, 10, 1, 1, "COM1", 8);
    again.presets = {{1, "Door again"}, {2, "Second"}};
    again.tour = {{7, 2}};

    TiXmlDocument document;
    BuildConfigDocument(controller, document);
    TiXmlPrinter file;
    document.Accept(&file);
    EXPECT_EQ(file.Str(), kSmallConfigurationFile);
    TiXmlPrinter notice;
    notice.SetStreamPrinting();
    document.Accept(&notice);
    EXPECT_EQ(notice.Str(), vorna_test::Flattened(kSmallConfigurationFile));
}
