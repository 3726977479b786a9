// vorna-host monitor DEVICE[:BAUD] [--protocol NAME]: watches a camera line
// that another keyboard or recorder drives, never writing to it. Without a
// baud rate or protocol it finds them from the traffic; it prints every frame
// as it arrives and, at Ctrl-C, the addresses it has seen.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace vorna_host {

// True when `args` ask for the monitor; its own arguments go to
// `monitorArgs`. A leading --module LIB is taken and ignored: the monitor
// needs no module.
bool IsMonitorCommand(const std::vector<std::string>& args, std::vector<std::string>& monitorArgs);

// Runs until Ctrl-C (or SIGTERM) or until the line goes away; the exit status.
int RunMonitor(const std::vector<std::string>& args, FILE* out, FILE* err);

std::string MonitorUsage();

}  // namespace vorna_host
