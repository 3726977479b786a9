// Configuration updates (IOCTL op 2) on a running site: the input is up to
// four documents separated by NUL bytes, each applied in turn; after each
// one that saved, the file must load back into the same camera table.
#include <cstring>

#include "host_session.h"

namespace {

constexpr int kMostDocuments = 4;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    vorna_fuzz::HostSession session(vorna_fuzz::HostSession::SiteFile());
    session.BindLines();
    session.CheckSavedFileLoadsBack();
    const uint8_t* end = data + size;
    for (int document = 0; document < kMostDocuments && data < end; ++document) {
        const auto* nul = static_cast<const uint8_t*>(std::memchr(data, 0, static_cast<size_t>(end - data)));
        const uint8_t* stop = nul != nullptr && document + 1 < kMostDocuments ? nul : end;
        session.Update(data, static_cast<size_t>(stop - data));
        session.CheckSavedFileLoadsBack();
        data = stop == end ? end : stop + 1;
    }
    session.RunWorker(10);
    return 0;
}
