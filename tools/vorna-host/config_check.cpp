#include "config_check.h"

#include <sys/stat.h>

#include <cerrno>

#include <tinyxml.h>

#include "camera_guard.h"
#include "protocol_limits.h"

namespace vorna_host {

namespace {

const char* const kConfigFile = "VORNA.xml";
const char* const kSideFile = "VORNA.xml.pending";

std::string LoadError(const TiXmlDocument& document) {
    std::string text = document.ErrorDesc();
    if (document.ErrorRow() > 0)
        text += " (row " + std::to_string(document.ErrorRow()) + ", column " + std::to_string(document.ErrorCol()) +
                ")";
    return text;
}

bool Exists(const char* path) {
    struct stat info;
    return stat(path, &info) == 0 || errno != ENOENT;
}

const LineOption* FindLine(const std::vector<LineOption>& lines, const std::string& port) {
    for (const LineOption& line : lines)
        if (line.name == port) return &line;
    return nullptr;
}

void CheckCamera(const TableCamera& camera, const std::string& protocol, const ProtocolLimits& limits,
                 std::vector<std::string>& problems) {
    const std::string name = "camera " + CameraName(camera.key) + ": ";
    const std::string address = CheckAddress(camera.address, protocol, limits);
    if (!address.empty()) problems.push_back(name + address);
    for (const auto& [number, preset] : camera.presetNames)
        if (number > limits.presets)
            problems.push_back(name + "preset " + std::to_string(number) + " \"" + preset + "\" is beyond " +
                               protocol + "'s " + std::to_string(limits.presets) + " presets");
}

}  // namespace

std::string ConfigFileLoadError() {
    TiXmlDocument document;
    if (document.LoadFile(kSideFile) || !Exists(kConfigFile) || document.LoadFile(kConfigFile)) return std::string();
    return LoadError(document);
}

std::vector<std::string> CheckConfigFile(const std::vector<LineOption>& lines,
                                         const std::map<std::string, ProtocolLimits>& protocols) {
    TiXmlDocument document;
    if (!document.LoadFile(document.LoadFile(kSideFile) ? kSideFile : kConfigFile))
        return {std::string(kConfigFile) + ": " + LoadError(document)};
    std::vector<std::string> problems;
    for (const TableCamera& camera : ReadCameraTable(document).cameras) {
        const std::string name = "camera " + CameraName(camera.key) + ": ";
        for (const auto& [position, preset] : camera.tourPositions)
            if (camera.presetNames.count(preset) == 0)
                problems.push_back(name + "tour position " + std::to_string(position) + " names preset " +
                                   std::to_string(preset) + ", which has no name");
        const LineOption* line = FindLine(lines, camera.port);
        if (line == nullptr) {
            problems.push_back(name + "port " + camera.port + " is not among the lines (--line " + camera.port +
                               "=PROTOCOL)");
            continue;
        }
        const auto limits = protocols.find(line->protocol);
        if (limits != protocols.end()) CheckCamera(camera, line->protocol, limits->second, problems);
    }
    return problems;
}

}  // namespace vorna_host
