#include "camera_table.h"

#include <tinyxml.h>

namespace vorna_host {

namespace {

constexpr int kModuleId = 1048576;

bool ReadInt(const TiXmlElement& element, const char* name, int& value) {
    return element.QueryIntAttribute(name, &value) == TIXML_SUCCESS;
}

template <typename Visit>
void ForEachChild(const TiXmlElement& parent, const char* name, Visit visit) {
    for (const TiXmlElement* child = parent.FirstChildElement(name); child != nullptr;
         child = child->NextSiblingElement(name))
        visit(*child);
}

TableCamera ReadInput(const TiXmlElement& input, const CameraKey& key) {
    TableCamera camera;
    camera.key = key;
    const char* port = input.Attribute("SerialPort");
    const char* protocol = input.Attribute("Protocol");
    camera.port = port ? port : "";
    camera.protocol = protocol ? protocol : "";
    ReadInt(input, "Address", camera.address);
    int tour = 0;
    camera.tourEnabled = ReadInt(input, "TourEnabled", tour) && tour == 1;
    ReadInt(input, "TourDwell", camera.tourDwell);
    // A preset without a name is dropped by the module, and with it every
    // tour position that names it; the positions are kept here so that a
    // check can point them out.
    ForEachChild(input, "Preset", [&](const TiXmlElement& preset) {
        int number;
        if (!ReadInt(preset, "Number", number)) return;
        const char* name = preset.Attribute("Name");
        if (name != nullptr && *name != '\0') camera.presetNames[number] = name;
        ForEachChild(preset, "Tour", [&](const TiXmlElement& tour) {
            int position;
            if (ReadInt(tour, "Position", position)) camera.tourPositions[position] = number;
        });
    });
    return camera;
}

void ReadPtz(const TiXmlElement& ptz, CameraTable& table) {
    ForEachChild(ptz, "Devices", [&](const TiXmlElement& devices) {
        CameraKey key;
        if (!ReadInt(devices, "ID", key.devicesId)) return;
        ForEachChild(devices, "Device", [&](const TiXmlElement& device) {
            if (!ReadInt(device, "Number", key.deviceNumber)) return;
            ForEachChild(device, "Input", [&](const TiXmlElement& input) {
                if (ReadInt(input, "Number", key.inputNumber)) table.cameras.push_back(ReadInput(input, key));
            });
        });
    });
    ForEachChild(ptz, "Protocol", [&](const TiXmlElement& protocol) {
        ProtocolLimits limits;
        const char* name = protocol.Attribute("Name");
        if (name != nullptr && ReadInt(protocol, "Presets", limits.presets) &&
            ReadInt(protocol, "MinAddress", limits.minAddress) && ReadInt(protocol, "MaxAddress", limits.maxAddress))
            table.protocols[name] = limits;
    });
}

bool SameKey(const CameraKey& a, const CameraKey& b) {
    return a.devicesId == b.devicesId && a.deviceNumber == b.deviceNumber && a.inputNumber == b.inputNumber;
}

}  // namespace

const TableCamera* CameraTable::Find(const CameraKey& key) const {
    for (const TableCamera& camera : cameras)
        if (SameKey(camera.key, key)) return &camera;
    return nullptr;
}

const ProtocolLimits* CameraTable::Limits(const std::string& protocol) const {
    const auto found = protocols.find(protocol);
    return found == protocols.end() ? nullptr : &found->second;
}

CameraTable ReadCameraTable(const TiXmlDocument& document) {
    CameraTable table;
    const TiXmlElement* root = document.RootElement();
    if (root == nullptr) return table;
    ForEachChild(*root, "PTZ", [&](const TiXmlElement& ptz) {
        int id;
        if (ReadInt(ptz, "ID", id) && id == kModuleId) ReadPtz(ptz, table);
    });
    return table;
}

std::string ListCameras(const CameraTable& table) {
    if (table.cameras.empty()) return "no cameras configured\n";
    std::string list;
    for (const TableCamera& camera : table.cameras) {
        list += std::to_string(camera.key.devicesId) + " " + std::to_string(camera.key.deviceNumber) + " " +
                std::to_string(camera.key.inputNumber) + "  port " + camera.port + "  " +
                (camera.protocol.empty() ? "(no protocol)" : camera.protocol) + "  address " +
                std::to_string(camera.address) + "  tour " + (camera.tourEnabled ? "on" : "off") + "\n";
    }
    return list;
}

void LatestCameraTable::TakeNotice(const std::string& notice) {
    TiXmlDocument document;
    document.Parse(notice.c_str());
    CameraTable table = ReadCameraTable(document);
    std::lock_guard<std::mutex> guard(mutex_);
    table_ = std::move(table);
}

CameraTable LatestCameraTable::Get() const {
    std::lock_guard<std::mutex> guard(mutex_);
    return table_;
}

}  // namespace vorna_host
