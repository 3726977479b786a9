#include "module_probe.h"

#include <limits.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <tinyxml.h>

#include "module_driver.h"

namespace vorna_host {

namespace {

ModuleFacts* g_facts = nullptr;

int TakeFacts(HostMessage* message, int) {
    if (message->type != VORNA_TYPE_CONFIG) return 0;
    TiXmlDocument document;
    document.Parse(std::string(static_cast<const char*>(message->data), message->length).c_str());
    const TiXmlElement* root = document.RootElement();
    if (root == nullptr) return 0;
    if (message->flags == VORNA_FLAGS_ANNOUNCEMENT) {
        const TiXmlElement* modules = root->FirstChildElement("Modules");
        const TiXmlElement* module = modules ? modules->FirstChildElement("Module") : nullptr;
        const char* name = module ? module->Attribute("Name") : nullptr;
        const char* version = module ? module->Attribute("Version") : nullptr;
        g_facts->name = name ? name : "";
        g_facts->version = version ? version : "";
    } else {
        g_facts->protocols = ReadCameraTable(document).protocols;
    }
    return 0;
}

}  // namespace

bool ProbeModule(const std::string& modulePath, ModuleFacts& facts, std::string& error) {
    std::unique_ptr<ModuleDriver> module = ModuleDriver::Open(modulePath, error);
    if (!module) {
        error = "cannot load module " + modulePath + ": " + error;
        return false;
    }
    char previous[PATH_MAX];
    char scratch[] = "/tmp/vorna-host-XXXXXX";
    if (getcwd(previous, sizeof previous) == nullptr || mkdtemp(scratch) == nullptr || chdir(scratch) != 0) {
        error = std::string("cannot make a scratch directory: ") + std::strerror(errno);
        return false;
    }
    g_facts = &facts;
    module->Start(&TakeFacts);
    module->Stop();
    g_facts = nullptr;
    for (const char* file : {"VORNA.xml", "VORNA.xml.pending", "VORNA.xml.bad"}) unlink(file);
    const bool back = chdir(previous) == 0;
    rmdir(scratch);
    if (!back) error = std::string("cannot return to ") + previous + ": " + std::strerror(errno);
    return back;
}

}  // namespace vorna_host
