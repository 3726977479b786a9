#include "core/event_intake.h"

#include <tinyxml.h>

#include <cstring>
#include <mutex>
#include <string>

// One XML document type for events and configuration, kept beside the safe save that shares its error state.
#include "config/xml_document.h"
#include "core/command_executor.h"
#include "env/environment.h"
#include "vorna/host_abi.h"

namespace vorna {

namespace {

// One command of an event document, with the keys of the camera it addresses.
struct EventInput {
    int devicesId;
    int deviceNumber;
    const TiXmlElement* element;
    int inputNumber;
    int opcode;
    double parm;
};

// Type 4 inputs: Alarm 1 opens an entry, Alarm 0 closes the matching one.
void ApplyAlarmInput(PtzCamera& camera, const EventInput& input) {
    int time, milliseconds, action, alarm;
    if (!ReadInt(*input.element, "Time", &time)) return;
    if (!ReadInt(*input.element, "Milliseconds", &milliseconds)) return;
    if (!ReadInt(*input.element, "Action", &action)) return;
    if (!ReadInt(*input.element, "Alarm", &alarm)) return;
    if (alarm == 1) {
        StartAlarmCommand(camera, static_cast<uint32_t>(action), input.opcode, input.parm);
    } else if (alarm == 0) {
        // The millisecond field is 16 bits wide: larger values wrap.
        const int64_t endTime = int64_t{time} * 1000 + static_cast<uint16_t>(milliseconds);
        EndAlarmCommand(camera, static_cast<uint32_t>(action), input.opcode, endTime, input.parm);
    }
}

void CarryOut(PtzController& controller, const EventInput& input, bool alarmForm) {
    std::lock_guard<std::mutex> guard(controller.lock);
    PtzCamera* camera = controller.FindCamera(input.devicesId, input.deviceNumber, input.inputNumber, false);
    if (camera == nullptr) return;
    if (alarmForm) {
        ApplyAlarmInput(*camera, input);
    } else {
        ExecuteCommand(*camera, input.opcode, input.parm);
        camera->activityTime = NowMs();
    }
    controller.CamerasChanged();
}

}  // namespace

void StartAlarmCommand(PtzCamera& camera, uint32_t action, int opcode, double parm) {
    QueuedCommand entry;
    entry.action = action;
    entry.opcode = opcode;
    entry.parm = parm;
    camera.commandQueue.push_back(entry);
}

void EndAlarmCommand(PtzCamera& camera, uint32_t action, int opcode, int64_t endTime, double parm) {
    for (QueuedCommand& entry : camera.commandQueue) {
        if (entry.action == action && entry.opcode == opcode && entry.parm == parm && entry.endTime == kInvalidTime) {
            entry.endTime = endTime;
            return;
        }
    }
}

int HandleEvent(PtzController& controller, const char* text, int64_t length, bool alarmForm) {
    if (text == nullptr || length <= 0) return 0;
    XmlDocument document;
    if (!document.ParseText(text, static_cast<size_t>(length))) return 0;
    const TiXmlElement* root = document.RootElement();
    if (root == nullptr || std::strcmp(root->Value(), "Tarn") != 0) return 0;

    ForEachChild(*root, "PTZ", [&](const TiXmlElement& ptz) {
        int id;
        if (!ReadInt(ptz, "ID", &id) || id != static_cast<int>(VORNA_MODULE_ID)) return;
        ForEachChild(ptz, "Devices", [&](const TiXmlElement& devices) {
            int devicesId;
            if (!ReadInt(devices, "ID", &devicesId)) return;
            ForEachChild(devices, "Device", [&](const TiXmlElement& device) {
                int deviceNumber;
                if (!ReadInt(device, "Number", &deviceNumber)) return;
                ForEachChild(device, "Video", [&](const TiXmlElement& video) {
                    ForEachChild(video, "Input", [&](const TiXmlElement& element) {
                        EventInput input{devicesId, deviceNumber, &element, 0, 0, 0.0};
                        if (!ReadInt(element, "Number", &input.inputNumber)) return;
                        if (!ReadInt(element, "Opcode", &input.opcode)) return;
                        if (!ReadDouble(element, "Parm", &input.parm)) return;
                        CarryOut(controller, input, alarmForm);
                    });
                });
            });
        });
    });
    return 0;
}

}  // namespace vorna
