// The bytes of "VORNA.xml" at Open; the file the module writes back, and the
// one after the host binds the lines, must load into the same camera table.
#include <string>

#include "host_session.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    vorna_fuzz::HostSession session(std::string(reinterpret_cast<const char*>(data), size));
    session.CheckSavedFileLoadsBack();
    session.BindLines();
    session.CheckSavedFileLoadsBack();
    session.RunWorker(10);
    return 0;
}
