#include "config/config_writer.h"

#include <algorithm>
#include <charconv>
#include <mutex>
#include <unordered_map>
#include <utility>
#include <vector>

#include "vorna/host_abi.h"
#include "vorna/ptz.h"

namespace vorna {

namespace {

// The preset count of a camera whose line has no protocol yet.
constexpr int kPresetCountWithoutProtocol = 99;

// Sets the decimal text of `value`, as TinyXML's integer setter writes it
// ("%d") but without a formatted print per attribute: the writer sets one
// for every preset.
void SetInt(TiXmlElement& element, const char* name, int value) {
    char text[16];
    *std::to_chars(text, text + sizeof text - 1, value).ptr = '\0';
    element.SetAttribute(name, text);
}

// A new child `name` with the integer attribute `key`, at the end.
TiXmlElement& Append(TiXmlElement& parent, const char* name, const char* key, int value) {
    auto* child = new TiXmlElement(name);
    SetInt(*child, key, value);
    parent.LinkEndChild(child);
    return *child;
}

// The child `name` whose integer attribute `key` equals `value`, appended
// with that attribute if there is none yet. Walks the siblings: used only
// inside an element that a camera with a repeated key already filled.
TiXmlElement& FindOrAppend(TiXmlElement& parent, const char* name, const char* key, int value) {
    for (TiXmlElement* child = parent.FirstChildElement(name); child != nullptr;
         child = child->NextSiblingElement(name)) {
        int existing;
        if (child->QueryIntAttribute(key, &existing) == TIXML_SUCCESS && existing == value) return *child;
    }
    return Append(parent, name, key, value);
}

int PresetCount(const PtzCamera& camera) {
    return camera.protocol != nullptr ? camera.protocol->GetPresetCount() : kPresetCountWithoutProtocol;
}

// Writes the camera table under `PTZ` in one pass: the `Devices`, `Device`
// and `Input` elements it creates are indexed by their keys, so cameras that
// share keys share elements at a cost that does not grow with the number of
// siblings.
class CameraWriter {
public:
    CameraWriter(const PtzController& controller, TiXmlElement& ptz) : controller_(controller), ptz_(ptz) {}

    void Write(const PtzCamera& camera) {
        const CameraKey key = KeyOf(camera);
        TiXmlElement& devices = Indexed(devices_, CameraKey{key.devicesId, 0, 0}, ptz_, "Devices", "ID", key.devicesId);
        TiXmlElement& device =
            Indexed(device_, CameraKey{key.devicesId, key.deviceNumber, 0}, devices, "Device", "Number", key.deviceNumber);
        const bool repeated = inputs_.count(key) != 0;
        TiXmlElement& input = Indexed(inputs_, key, device, "Input", "Number", key.inputNumber);
        auto line = controller_.serialLines.find(camera.serialPort);
        input.SetAttribute("Protocol", line != controller_.serialLines.end() ? line->second.protocolName : "");
        input.SetAttribute("SerialPort", camera.serialPort);
        SetInt(input, "Address", static_cast<int>(camera.address));
        SetInt(input, "Presets", PresetCount(camera));
        SetInt(input, "TourDwell", camera.tourDwell);
        SetInt(input, "TourEnabled", camera.tourEnabled ? 1 : 0);
        SetInt(input, "TourIdle", camera.tourIdle);
        WritePresets(camera, input, repeated);
    }

private:
    using Index = std::unordered_map<CameraKey, TiXmlElement*, CameraKeyHash>;

    static TiXmlElement& Indexed(Index& index, const CameraKey& key, TiXmlElement& parent, const char* name,
                                 const char* attribute, int value) {
        TiXmlElement*& element = index[key];
        if (element == nullptr) element = &Append(parent, name, attribute, value);
        return *element;
    }

    // Named presets from 1 up to the protocol's count, each with the tour
    // positions that visit it (ascending); an unnamed preset takes its tour
    // positions with it. Only an `Input` that an earlier camera with the same
    // keys filled can already hold a preset or a tour position.
    void WritePresets(const PtzCamera& camera, TiXmlElement& input, bool repeated) {
        visits_.clear();
        for (const auto& step : camera.tour) visits_.emplace_back(step.second, step.first);
        std::sort(visits_.begin(), visits_.end());
        auto visit = visits_.begin();
        const int count = PresetCount(camera);
        if (count < 1) return;
        const auto last = camera.presets.upper_bound(count);
        for (auto preset = camera.presets.lower_bound(1); preset != last; ++preset) {
            const int number = preset->first;
            if (preset->second.empty()) continue;
            TiXmlElement& element = repeated ? FindOrAppend(input, "Preset", "Number", number)
                                             : Append(input, "Preset", "Number", number);
            element.SetAttribute("Name", preset->second);
            while (visit != visits_.end() && visit->first < number) ++visit;
            for (; visit != visits_.end() && visit->first == number; ++visit) {
                if (repeated)
                    FindOrAppend(element, "Tour", "Position", visit->second);
                else
                    Append(element, "Tour", "Position", visit->second);
            }
        }
    }

    const PtzController& controller_;
    TiXmlElement& ptz_;
    Index devices_;
    Index device_;
    Index inputs_;
    // (preset number, tour position) of the camera being written, sorted.
    std::vector<std::pair<int, int>> visits_;
};

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
    ptz->SetAttribute("OPCODE_MAX", VORNA_OPCODE_MAX);
    root->LinkEndChild(ptz);
    CameraWriter writer(controller, *ptz);
    for (const auto& camera : controller.cameras) writer.Write(*camera);
    for (const auto& protocol : controller.protocols)
        if (protocol.second != nullptr) ptz->LinkEndChild(Capabilities(protocol.first, *protocol.second));
}

}  // namespace vorna
