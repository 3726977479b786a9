// An alarm event document (Write, type 4) for cameras on every protocol, then
// enough worker passes for its bursts to be sent and to expire.
#include "host_session.h"
#include "vorna/host_abi.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    vorna_fuzz::HostSession session(vorna_fuzz::HostSession::SiteFile());
    session.BindLines();
    session.Event(VORNA_TYPE_ALARM_EVENT, data, size);
    session.RunWorker(60);
    return 0;
}
