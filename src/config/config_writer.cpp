#include "config/config_writer.h"

#include <mutex>

#include "core/command_executor.h"
#include "vorna/host_abi.h"

namespace vorna {

namespace {

// The preset count of a camera whose line has no protocol yet.
constexpr int kPresetCountWithoutProtocol = 99;

// The child `name` whose integer attribute `key` equals `value`, appended
// with that attribute if there is none yet.
TiXmlElement& FindOrAppend(TiXmlElement& parent, const char* name, const char* key, int value) {
    for (TiXmlElement* child = parent.FirstChildElement(name); child != nullptr;
         child = child->NextSiblingElement(name)) {
        int existing;
        if (child->QueryIntAttribute(key, &existing) == TIXML_SUCCESS && existing == value) return *child;
    }
    auto* child = new TiXmlElement(name);
    child->SetAttribute(key, value);
    parent.LinkEndChild(child);
    return *child;
}

int PresetCount(const PtzCamera& camera) {
    return camera.protocol != nullptr ? camera.protocol->GetPresetCount() : kPresetCountWithoutProtocol;
}

// Named presets up to the protocol's count, each with the tour positions
// that visit it; an unnamed preset takes its tour positions with it.
void WritePresets(const PtzCamera& camera, TiXmlElement& input) {
    for (int number = 1; number <= PresetCount(camera); ++number) {
        auto name = camera.presets.find(number);
        if (name == camera.presets.end() || name->second.empty()) continue;
        TiXmlElement& preset = FindOrAppend(input, "Preset", "Number", number);
        preset.SetAttribute("Name", name->second);
        for (const auto& step : camera.tour)
            if (step.second == number) FindOrAppend(preset, "Tour", "Position", step.first);
    }
}

void WriteCamera(const PtzController& controller, const PtzCamera& camera, TiXmlElement& ptz) {
    TiXmlElement& devices = FindOrAppend(ptz, "Devices", "ID", camera.devicesId);
    TiXmlElement& device = FindOrAppend(devices, "Device", "Number", camera.deviceNumber);
    TiXmlElement& input = FindOrAppend(device, "Input", "Number", camera.inputNumber);
    auto line = controller.serialLines.find(camera.serialPort);
    input.SetAttribute("Protocol", line != controller.serialLines.end() ? line->second.protocolName : "");
    input.SetAttribute("SerialPort", camera.serialPort);
    input.SetAttribute("Address", static_cast<int>(camera.address));
    input.SetAttribute("Presets", PresetCount(camera));
    input.SetAttribute("TourDwell", camera.tourDwell);
    input.SetAttribute("TourEnabled", camera.tourEnabled ? 1 : 0);
    input.SetAttribute("TourIdle", camera.tourIdle);
    WritePresets(camera, input);
}

// What the host may offer for cameras on a line with this protocol.
TiXmlElement* Capabilities(const std::string& name, CProtocol& protocol) {
    auto* element = new TiXmlElement("Protocol");
    element->SetAttribute("Name", name);
    element->SetAttribute("Presets", protocol.GetPresetCount());
    element->SetAttribute("MinAddress", protocol.GetMinAddress());
    element->SetAttribute("MaxAddress", protocol.GetMaxAddress());
    element->SetAttribute("AutoFocus", protocol.CanAutoFocus() ? 1 : 0);
    element->SetAttribute("AutoIris", protocol.CanAutoIris() ? 1 : 0);
    element->SetAttribute("ArbCmd", protocol.RawCommand(1, 1).empty() ? 0 : 1);
    element->SetAttribute("Menu", protocol.GetMenuType());
    element->SetAttribute("Flip", protocol.CanFlip() ? 1 : 0);
    element->SetAttribute("ApplePeel", protocol.CanApplePeel() ? 1 : 0);
    element->SetAttribute("Delay", protocol.GetDelay());
    element->SetAttribute("Pattern", protocol.GetPatternType());
    return element;
}

}  // namespace

void BuildConfigDocument(PtzController& controller, TiXmlDocument& document) {
    std::lock_guard<std::mutex> guard(controller.lock);
    document.LinkEndChild(new TiXmlDeclaration("", "", ""));
    auto* root = new TiXmlElement("Tarn");
    root->SetAttribute("Delta", 0);
    document.LinkEndChild(root);
    auto* ptz = new TiXmlElement("PTZ");
    ptz->SetAttribute("ID", static_cast<int>(VORNA_MODULE_ID));
    ptz->SetAttribute("OPCODE_MAX", kOpcodeCount);
    root->LinkEndChild(ptz);
    for (const auto& camera : controller.cameras) WriteCamera(controller, *camera, *ptz);
    for (const auto& protocol : controller.protocols)
        if (protocol.second != nullptr) ptz->LinkEndChild(Capabilities(protocol.first, *protocol.second));
}

}  // namespace vorna
