#include "offline_runs.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "config_check.h"
#include "module_probe.h"

namespace vorna_host {

namespace {

constexpr int kProblems = 1;

int Fail(const std::string& message) {
    std::fprintf(stderr, "vorna-host: %s\n", message.c_str());
    return kProblems;
}

}  // namespace

int PrintVersions(const std::string& modulePath) {
    ModuleFacts facts;
    std::string error;
    if (!ProbeModule(modulePath, facts, error)) return Fail(error);
    std::printf("vorna-host %s\nmodule %s %s\n", VORNA_HOST_VERSION, facts.name.c_str(), facts.version.c_str());
    return 0;
}

int CheckConfiguration(const HostOptions& options, const std::string& modulePath) {
    ModuleFacts facts;
    std::string error;
    if (!ProbeModule(modulePath, facts, error)) return Fail(error);
    if (!options.workDir.empty() && chdir(options.workDir.c_str()) != 0)
        return Fail("cannot enter working directory " + options.workDir + ": " + std::strerror(errno));
    if (access("VORNA.xml", F_OK) != 0) return Fail("no VORNA.xml to check");
    const std::vector<std::string> problems = CheckConfigFile(options.lines, facts.protocols);
    for (const std::string& problem : problems) std::printf("%s\n", problem.c_str());
    if (problems.empty()) std::printf("VORNA.xml: no problems\n");
    return problems.empty() ? 0 : kProblems;
}

}  // namespace vorna_host
