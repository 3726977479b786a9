#include "host/announcement.h"

#include <tinyxml.h>

#include "host/host_sender.h"

namespace vorna {

namespace {
const char* const kModuleName = "VORNA";
const char* const kModuleVersion = "26.1.7.3";
}  // namespace

void AnnounceModule() {
    TiXmlElement module("Module");
    module.SetAttribute("Name", kModuleName);
    module.SetAttribute("ID", static_cast<int>(VORNA_MODULE_ID));
    module.SetAttribute("Version", kModuleVersion);
    TiXmlElement modules("Modules");
    modules.InsertEndChild(module);
    TiXmlElement root("Tarn");
    root.SetAttribute("Delta", 0);
    root.InsertEndChild(modules);

    TiXmlDocument document;
    document.InsertEndChild(TiXmlDeclaration("", "", ""));
    document.InsertEndChild(root);

    TiXmlPrinter printer;
    printer.SetStreamPrinting();
    document.Accept(&printer);
    const std::string text = printer.Str();

    HostMessage record = MakeHostMessage(VORNA_TYPE_CONFIG, VORNA_FLAGS_ANNOUNCEMENT, VORNA_MODULE_ID,
                                         text.data(), static_cast<uint32_t>(text.size()));
    SendToHost(&record);
}

}  // namespace vorna
