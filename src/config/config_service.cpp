#include "config/config_service.h"

#include <mutex>
#include <string>

#include "config/config_apply.h"
#include "config/config_writer.h"
#include "config/safe_file.h"
#include "core/xml_document.h"
#include "host/host_sender.h"
#include "vorna/host_abi.h"

namespace vorna {

const char* const kConfigFileName = "VORNA.xml";

namespace {

void RegisterProtocols(PtzController& controller) {
    std::lock_guard<std::mutex> guard(controller.lock);
    // A repeated Open replaces every protocol object; no camera may keep a
    // link to a destroyed one.
    for (auto& camera : controller.cameras) camera->protocol = nullptr;
    FillProtocolTable(controller.protocols);
}

// Loads the file and applies it. The document is gone when this returns, so
// the save that follows does not hold two copies of the configuration.
void LoadAndApply(PtzController& controller) {
    XmlDocument document;
    if (LoadDocument(document, kConfigFileName)) ApplyConfiguration(controller, document, true);
}

// Parses and applies an update; true when anything changed. As above, the
// parsed update is freed before the save builds its document.
bool ParseAndApply(PtzController& controller, const char* text, size_t length) {
    XmlDocument document;
    if (!document.ParseText(text, length)) {
        LogToHost(kLogUnprocessable, Format("update config parse error %s", document.ModuleErrorDesc().c_str()));
        return false;
    }
    return ApplyConfiguration(controller, document, false);
}

}  // namespace

int Start(PtzController& controller) {
    RegisterProtocols(controller);
    LoadAndApply(controller);
    Save(controller);
    controller.started = true;
    return 0;
}

int Update(PtzController& controller, const char* text, size_t length) {
    if (length == 0) return 0;
    if (ParseAndApply(controller, text, length)) Save(controller);
    return 0;
}

void Save(PtzController& controller) {
    XmlDocument document;
    BuildConfigDocument(controller, document);
    SaveDocument(document, kConfigFileName);
    TiXmlPrinter notice;
    notice.SetStreamPrinting();
    document.Accept(&notice);
    // Only the printed notice is needed from here on.
    document.Clear();
    HostMessage record = MakeHostMessage(VORNA_TYPE_CONFIG, VORNA_FLAGS_NOTICE, VORNA_MODULE_ID, notice.CStr(),
                                         static_cast<uint32_t>(notice.Size()));
    const int result = SendToHost(&record);
    if (result != 0) LogError(Format("config event ret %d", result));
}

}  // namespace vorna
