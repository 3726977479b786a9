// A host as the fuzz targets play it: loads the module through its entry
// points, checks every message the module sends, and stops the process at the
// first broken promise, so the fuzzer keeps the input that broke it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace vorna_fuzz {

// Ends the run with `what` when `condition` is false.
void Require(bool condition, const char* what);

// One module lifetime in a working directory of its own: Load and Open from
// the given configuration file (none when empty), Close and Unload at the end.
class HostSession {
public:
    explicit HostSession(const std::string& file);
    ~HostSession();
    HostSession(const HostSession&) = delete;
    HostSession& operator=(const HostSession&) = delete;

    // A camera table with one camera on each protocol, on lines COM1 to
    // COM12, as a site's file keeps it.
    static const std::string& SiteFile();

    // Binds COM1 to COM12 to the twelve protocols, as the host's serial-port
    // document does after Open.
    void BindLines();
    void Event(uint64_t type, const uint8_t* data, size_t size);
    void Update(const uint8_t* data, size_t size);
    // Worker passes on a clock that jumps to the moment each pass asks for,
    // so that repeats, alarm bursts, tours and idle stops all come due.
    void RunWorker(int passes);
    // When the last call saved: "VORNA.xml" loads through the module's own
    // loader into a camera table that writes the same document again.
    void CheckSavedFileLoadsBack();
};

}  // namespace vorna_fuzz
