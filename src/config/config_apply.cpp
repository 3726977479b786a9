#include "config/config_apply.h"

#include <strings.h>

#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "config/text_encoding.h"
#include "host/host_sender.h"
#include "vorna/host_abi.h"
#include "vorna/ptz.h"

namespace vorna {

namespace {

// A text the module may keep: a host writing in a single-byte code page gets
// its names converted, so that the file written from them loads again.
std::string ReadText(const TiXmlElement& element, const char* name) {
    const char* value = element.Attribute(name);
    return value != nullptr ? AsUtf8(value) : "";
}

bool Has(const TiXmlElement& element, const char* name) { return element.Attribute(name) != nullptr; }

// Binding a camera to a protocol keeps its preset names unless it moves from
// one protocol to another: cameras read from the file have none until the
// host's serial-port document binds their line.
void BindProtocol(PtzCamera& camera, CProtocol* protocol, uint64_t stream) {
    if (camera.protocol != nullptr && camera.protocol != protocol) camera.presets.clear();
    camera.protocol = protocol;
    camera.stream = stream;
}

PtzCamera& FindOrAppendCamera(PtzController& controller, const CameraKey& key) {
    PtzCamera* camera = controller.FindCamera(key.devicesId, key.deviceNumber, key.inputNumber, false);
    if (camera != nullptr) return *camera;
    auto created = std::make_unique<PtzCamera>();
    created->devicesId = key.devicesId;
    created->deviceNumber = key.deviceNumber;
    created->inputNumber = key.inputNumber;
    return controller.cameras.Append(std::move(created));
}

// Binds the camera to the protocol of its (new) port. False when an update
// names a port or protocol the module does not know; the file keeps the
// camera's old protocol instead.
bool BindToPort(PtzController& controller, PtzCamera& camera, bool fromFile) {
    auto line = controller.serialLines.find(camera.serialPort);
    if (line == controller.serialLines.end()) {
        if (fromFile) return true;
        LogToHost(VORNA_LOG_MISSING, Format("ptz camera serial port %s not found", camera.serialPort.c_str()));
        return false;
    }
    CProtocol* protocol = FindProtocol(controller.protocols, line->second.protocolName);
    if (protocol == nullptr) {
        if (fromFile) return true;
        LogToHost(VORNA_LOG_MISSING, Format("ptz camera protocol %s not found", line->second.protocolName.c_str()));
        return false;
    }
    BindProtocol(camera, protocol, line->second.stream);
    return true;
}

// The one update shape that only switches the tour on or off: no other
// camera attribute and no children. It keeps presets and tour positions.
bool IsTourToggle(const TiXmlElement& input, bool fromFile) {
    for (const char* name : {"Protocol", "SerialPort", "Address", "TourDwell", "TourIdle", "Input"})
        if (Has(input, name)) return false;
    return !fromFile && Has(input, "TourEnabled") && input.NoChildren();
}

// Stores each tour attribute that is an integer; true when any was.
bool ApplyTourSettings(PtzCamera& camera, const TiXmlElement& input) {
    bool given = false;
    int value;
    if (ReadInt(input, "TourDwell", &value)) {
        camera.tourDwell = value;
        given = true;
    }
    if (ReadInt(input, "TourEnabled", &value)) {
        camera.tourEnabled = value == 1;
        given = true;
    }
    if (ReadInt(input, "TourIdle", &value)) {
        camera.tourIdle = value;
        given = true;
    }
    return given;
}

// Stores `name` as the name of preset `number`, in a map node and string
// taken from `spare` when it has one: a site's update rewrites the names of
// every camera it names, mostly with the names they already had.
void StoreName(std::map<int, std::string>& presets, int number, const char* name,
               std::map<int, std::string>& spare) {
    auto position = presets.lower_bound(number);
    if (position == presets.end() || position->first != number) {
        if (spare.empty()) {
            position = presets.emplace_hint(position, number, std::string());
        } else {
            auto node = spare.extract(spare.begin());
            node.key() = number;
            position = presets.insert(position, std::move(node));
        }
    }
    if (IsUtf8(name))
        position->second.assign(name);
    else
        position->second = AsUtf8(name);
}

// Rebuilds the preset names, and the tour positions when tour data was given.
void RewritePresets(PtzCamera& camera, const TiXmlElement& input, bool tourGiven) {
    std::map<int, std::string> previous;
    previous.swap(camera.presets);
    if (tourGiven) camera.tour.clear();
    ForEachChild(input, "Preset", [&](const TiXmlElement& preset) {
        const char* name = preset.Attribute("Name");
        int number;
        if (name == nullptr || *name == '\0' || !ReadInt(preset, "Number", &number)) return;
        if (number >= 1) StoreName(camera.presets, number, name, previous);
        if (!tourGiven) return;
        ForEachChild(preset, "Tour", [&](const TiXmlElement& tour) {
            int position;
            if (ReadInt(tour, "Position", &position) && position >= 1) camera.tour[position] = number;
        });
    });
}

void ApplyInput(PtzController& controller, const CameraKey& key, const TiXmlElement& input, bool fromFile) {
    std::lock_guard<std::mutex> guard(controller.lock);
    controller.CamerasChanged();
    const std::string port = ReadText(input, "SerialPort");
    if (!port.empty() && strcasecmp(port.c_str(), "none") == 0) {
        controller.FindCamera(key.devicesId, key.deviceNumber, key.inputNumber, true);
        return;
    }
    PtzCamera& camera = FindOrAppendCamera(controller, key);
    int address;
    if (!port.empty() && ReadInt(input, "Address", &address)) {
        camera.serialPort = port;
        camera.address = static_cast<uint32_t>(address);
        if (!BindToPort(controller, camera, fromFile)) {
            controller.FindCamera(key.devicesId, key.deviceNumber, key.inputNumber, true);
            return;
        }
    }
    const bool tourGiven = ApplyTourSettings(camera, input);
    if (IsTourToggle(input, fromFile)) return;
    RewritePresets(camera, input, tourGiven);
}

bool ApplyCameraSections(PtzController& controller, const TiXmlElement& root, bool fromFile) {
    bool applied = false;
    ForEachChild(root, "PTZ", [&](const TiXmlElement& ptz) {
        int id;
        if (!ReadInt(ptz, "ID", &id) || id != static_cast<int>(VORNA_MODULE_ID)) return;
        ForEachChild(ptz, "Devices", [&](const TiXmlElement& devices) {
            CameraKey key{};
            if (!ReadInt(devices, "ID", &key.devicesId)) return;
            ForEachChild(devices, "Device", [&](const TiXmlElement& device) {
                if (!ReadInt(device, "Number", &key.deviceNumber)) return;
                ForEachChild(device, "Input", [&](const TiXmlElement& input) {
                    if (!ReadInt(input, "Number", &key.inputNumber)) return;
                    ApplyInput(controller, key, input, fromFile);
                    applied = true;
                });
            });
        });
    });
    return applied;
}

// What one `Device` of a serial section says about its port.
struct SerialDevice {
    std::string port;
    std::string protocolName;
    int use = 0;
    int streamId = 0;
};

SerialDevice ReadSerialDevice(const TiXmlElement& element) {
    SerialDevice device;
    device.port = ReadText(element, "Port");
    device.protocolName = ReadText(element, "Protocol");
    ReadInt(element, "Use", &device.use);
    ReadInt(element, "StreamID", &device.streamId);
    return device;
}

// The protocol the device gives its port, or null when it gives none. A port
// that drives PTZ cameras with a known protocol is (re)entered in the
// serial-line map; an unknown protocol takes the port out of it.
CProtocol* UpdateSerialLine(PtzController& controller, const SerialDevice& device) {
    if (device.protocolName.empty() || device.use != VORNA_SERIAL_USE_PTZ) return nullptr;
    CProtocol* protocol = FindProtocol(controller.protocols, device.protocolName);
    if (protocol == nullptr) {
        LogToHost(VORNA_LOG_MISSING, Format("%s ptz protocol not available", device.protocolName.c_str()));
        controller.serialLines.erase(device.port);
        return nullptr;
    }
    controller.serialLines[device.port] = SerialLine{device.protocolName, static_cast<uint64_t>(device.streamId)};
    return protocol;
}

// Rebinds every camera on the device's port, or deletes them when the port
// has no protocol; true when there was any.
bool ApplySerialDevice(PtzController& controller, const SerialDevice& device) {
    std::lock_guard<std::mutex> guard(controller.lock);
    controller.CamerasChanged();
    CProtocol* protocol = UpdateSerialLine(controller, device);
    bool touched = false;
    for (auto camera = controller.cameras.begin(); camera != controller.cameras.end();) {
        if ((*camera)->serialPort != device.port) {
            ++camera;
            continue;
        }
        touched = true;
        if (protocol == nullptr) {
            camera = controller.cameras.Erase(camera);
            continue;
        }
        BindProtocol(**camera, protocol, static_cast<uint64_t>(device.streamId));
        ++camera;
    }
    return touched;
}

bool ApplySerialSections(PtzController& controller, const TiXmlElement& root) {
    bool applied = false;
    ForEachChild(root, "Serial", [&](const TiXmlElement& serial) {
        int id;
        if (!ReadInt(serial, "ID", &id) || id != VORNA_SERIAL_ID) return;
        ForEachChild(serial, "Input", [&](const TiXmlElement& input) {
            ForEachChild(input, "Device", [&](const TiXmlElement& element) {
                const SerialDevice device = ReadSerialDevice(element);
                if (device.port.empty()) return;
                if (ApplySerialDevice(controller, device)) applied = true;
            });
        });
    });
    return applied;
}

}  // namespace

bool ApplyConfiguration(PtzController& controller, const XmlDocument& document, bool fromFile) {
    const TiXmlElement* root = document.RootElement();
    if (root == nullptr) return false;
    if (!fromFile) {
        int delta;
        if (!ReadInt(*root, "Delta", &delta)) {
            LogToHost(VORNA_LOG_UNPROCESSABLE, Format("Query delta attribute error %s", document.ModuleErrorDesc().c_str()));
            return false;
        }
        if (delta == 0) return ApplySerialSections(controller, *root);
    }
    return ApplyCameraSections(controller, *root, fromFile);
}

}  // namespace vorna
