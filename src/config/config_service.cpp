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

std::string PrintStream(const TiXmlDocument& document) {
    TiXmlPrinter printer;
    printer.SetStreamPrinting();
    document.Accept(&printer);
    return printer.Str();
}

void RegisterProtocols(PtzController& controller) {
    std::lock_guard<std::mutex> guard(controller.lock);
    // A repeated Open replaces every protocol object; no camera may keep a
    // link to a destroyed one.
    for (auto& camera : controller.cameras) camera->protocol = nullptr;
    FillProtocolTable(controller.protocols);
}

}  // namespace

int Start(PtzController& controller) {
    RegisterProtocols(controller);
    XmlDocument document;
    if (LoadDocument(document, kConfigFileName)) ApplyConfiguration(controller, document, true);
    Save(controller);
    controller.started = true;
    return 0;
}

int Update(PtzController& controller, const char* text, size_t length) {
    if (length == 0) return 0;
    XmlDocument document;
    if (!document.ParseText(text, length)) {
        LogToHost(kLogUnprocessable, Format("update config parse error %s", document.ModuleErrorDesc().c_str()));
        return 0;
    }
    if (ApplyConfiguration(controller, document, false)) Save(controller);
    return 0;
}

void Save(PtzController& controller) {
    XmlDocument document;
    BuildConfigDocument(controller, document);
    const std::string notice = PrintStream(document);
    SaveDocument(document, kConfigFileName);
    HostMessage record = MakeHostMessage(VORNA_TYPE_CONFIG, VORNA_FLAGS_NOTICE, VORNA_MODULE_ID, notice.data(),
                                         static_cast<uint32_t>(notice.size()));
    const int result = SendToHost(&record);
    if (result != 0) LogError(Format("config event ret %d", result));
}

}  // namespace vorna
