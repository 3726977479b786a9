// The module's camera table as the host sees it: read from a configuration
// document (the module's notice, or "VORNA.xml" itself), with the limits the
// notice publishes for each protocol.
#pragma once

#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "documents.h"

class TiXmlDocument;

namespace vorna_host {

struct TableCamera {
    CameraKey key;
    std::string port;
    std::string protocol;  // empty until the camera's line is bound
    int address = 1;
    bool tourEnabled = false;
    int tourDwell = 0;                       // seconds between tour steps
    std::map<int, std::string> presetNames;  // preset number to name
    std::map<int, int> tourPositions;        // tour position to preset number
};

// What the module publishes per protocol.
struct ProtocolLimits {
    int presets = 0;
    int minAddress = 0;
    int maxAddress = 0;
};

struct CameraTable {
    std::vector<TableCamera> cameras;
    std::map<std::string, ProtocolLimits> protocols;

    const TableCamera* Find(const CameraKey& key) const;
    const ProtocolLimits* Limits(const std::string& protocol) const;
};

// Reads the cameras (and protocol limits, where the document has them) the
// way the module reads its file: sections and elements whose keys are not
// numbers are skipped.
CameraTable ReadCameraTable(const TiXmlDocument& document);

// One line per camera, as 'list' prints it:
// "1 1 1  port COM1  Pelco-D  address 1  tour off".
std::string ListCameras(const CameraTable& table);

// The table of the module's latest configuration notice, shared between the
// host callback and the console.
class LatestCameraTable {
public:
    void TakeNotice(const std::string& notice);
    CameraTable Get() const;

private:
    mutable std::mutex mutex_;
    CameraTable table_;
};

}  // namespace vorna_host
