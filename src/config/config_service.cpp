#include "config/config_service.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <mutex>
#include <string>

#include "config/config_apply.h"
#include "config/config_writer.h"
#include "config/safe_file.h"
#include "config/xml_document.h"
#include "env/environment.h"
#include "host/host_sender.h"
#include "vorna/host_abi.h"

namespace vorna {

const char* const kConfigFileName = "VORNA.xml";

namespace {

const char* const kKeptFileName = "VORNA.xml.bad";

void RegisterProtocols(PtzController& controller) {
    std::lock_guard<std::mutex> guard(controller.lock);
    // A repeated Open replaces every protocol object; no camera may keep a
    // link to a destroyed one.
    for (auto& camera : controller.cameras) camera->protocol = nullptr;
    FillProtocolTable(controller.protocols);
}

// TinyXML's text, with the row and column where the parse stopped when the
// parse got that far.
std::string LoadError(const XmlDocument& document) {
    std::string text = document.ModuleErrorDesc();
    if (document.Error() && document.ErrorRow() > 0)
        text += Format(" (row %d, column %d)", document.ErrorRow(), document.ErrorCol());
    return text;
}

// A configuration file that is there but did not load (a typo, a truncated
// copy, no read permission) is moved aside before the save at start could
// replace it with an empty camera table.
void KeepUnloadableFile(const XmlDocument& document) {
    FileSystem& files = CurrentEnvironment().files();
    struct stat info;
    if (files.Stat(kConfigFileName, info) != 0 && errno == ENOENT) return;
    if (files.Rename(kConfigFileName, kKeptFileName) != 0) {
        const int error = errno;
        LogToHost(VORNA_LOG_UNPROCESSABLE, Format("config file VORNA.xml load error %s, not kept: rename error %d - %s",
                                            LoadError(document).c_str(), error, std::strerror(error)));
        return;
    }
    LogToHost(VORNA_LOG_UNPROCESSABLE,
              Format("config file VORNA.xml load error %s, kept as VORNA.xml.bad", LoadError(document).c_str()));
}

// Loads the file and applies it. The document is gone when this returns, so
// the save that follows does not hold two copies of the configuration.
void LoadAndApply(PtzController& controller) {
    XmlDocument document;
    if (LoadDocument(document, kConfigFileName))
        ApplyConfiguration(controller, document, true);
    else
        KeepUnloadableFile(document);
}

// Parses and applies an update; true when anything changed. As above, the
// parsed update is freed before the save builds its document.
bool ParseAndApply(PtzController& controller, const char* text, size_t length) {
    XmlDocument document;
    if (!document.ParseText(text, length)) {
        LogToHost(VORNA_LOG_UNPROCESSABLE, Format("update config parse error %s", document.ModuleErrorDesc().c_str()));
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
    // The notice is printed first: the save releases the document as it
    // prints the file.
    TiXmlPrinter notice;
    notice.SetStreamPrinting();
    document.Accept(&notice);
    if (!SaveDocument(document, kConfigFileName))
        LogToHost(VORNA_LOG_UNPROCESSABLE, Format("config save error %s", document.ModuleErrorDesc().c_str()));
    HostMessage record = MakeHostMessage(VORNA_TYPE_CONFIG, VORNA_FLAGS_NOTICE, VORNA_MODULE_ID, notice.CStr(),
                                         static_cast<uint32_t>(notice.Size()));
    const int result = SendToHost(&record);
    if (result != 0) LogError(Format("config event ret %d", result));
}

}  // namespace vorna
