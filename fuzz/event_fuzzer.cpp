// An immediate event document (Write, type 8) for cameras on every protocol,
// then the worker's passes over whatever it left running.
#include "host_session.h"
#include "vorna/host_abi.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    vorna_fuzz::HostSession session(vorna_fuzz::HostSession::SiteFile());
    session.BindLines();
    session.Event(VORNA_TYPE_EVENT, data, size);
    session.RunWorker(20);
    return 0;
}
