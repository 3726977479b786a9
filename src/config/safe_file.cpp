#include "config/safe_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "host/host_sender.h"

namespace vorna {

namespace {

const char* const kSideFileSuffix = ".pending";

std::string PrintIndented(const TiXmlDocument& document) {
    TiXmlPrinter printer;
    document.Accept(&printer);
    return printer.Str();
}

// "<what> <errno> - <text>", from errno as the failed call left it.
std::string ErrnoMessage(const char* what) {
    const int error = errno;
    return Format("%s %d - %s", what, error, std::strerror(error));
}

// The first failure of a save; later ones never overwrite it.
class FirstFailure {
public:
    void Record(const char* what) {
        if (message_.empty()) message_ = ErrnoMessage(what);
    }
    void Set(const std::string& message) {
        if (message_.empty()) message_ = message;
    }
    bool Failed() const { return !message_.empty(); }
    const std::string& Message() const { return message_; }

private:
    std::string message_;
};

// Syncs the directory that holds `fileName`, so that a rename in it is on
// disk too. Best effort: a directory that cannot be synced changes nothing.
void SyncDirectoryOf(const std::string& fileName) {
    const size_t slash = fileName.rfind('/');
    const std::string directory = slash == std::string::npos ? "." : slash == 0 ? "/" : fileName.substr(0, slash);
    const int fd = open(directory.c_str(), O_RDONLY | O_DIRECTORY);
    if (fd < 0) return;
    fsync(fd);
    close(fd);
}

// Writes `text` to a new side file and forces it to disk. A flush or sync
// that fails fails the save: a document smaller than the stream's buffer only
// reaches the disk there.
void WriteSideFile(const std::string& path, const std::string& text, FirstFailure& failure) {
    FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) {
        failure.Record("create error");
        return;
    }
    const size_t written = std::fwrite(text.data(), 1, text.size(), file);
    if (std::ferror(file)) failure.Record("write error");
    if (std::fflush(file) != 0 || std::ferror(file)) failure.Record("write error");
    if (fsync(fileno(file)) != 0) failure.Record("write error");
    if (std::fclose(file) != 0) failure.Record("close error");
    if (written != text.size()) failure.Set(Format("only wrote %zu of %zu bytes", written, text.size()));
}

}  // namespace

bool LoadDocument(XmlDocument& document, const std::string& fileName) {
    const std::string sideFile = fileName + kSideFileSuffix;
    if (document.LoadPath(sideFile)) {
        std::rename(sideFile.c_str(), fileName.c_str());
        return true;
    }
    return document.LoadPath(fileName);
}

bool SaveDocument(XmlDocument& document, const std::string& fileName) {
    const std::string sideFile = fileName + kSideFileSuffix;
    FirstFailure failure;
    WriteSideFile(sideFile, PrintIndented(document), failure);
    if (failure.Failed()) {
        unlink(sideFile.c_str());
        document.SetModuleError(kErrorSaveFailed, failure.Message());
        return false;
    }
    // No side file left to rename counts as done: a load moves a complete
    // side file into place as well.
    if (std::rename(sideFile.c_str(), fileName.c_str()) != 0 && errno != ENOENT) {
        // The side file stays, so the next load picks the new content up.
        document.SetModuleError(kErrorSaveFailed, ErrnoMessage("Failed to rename .xml.pending to .xml file"));
        return false;
    }
    SyncDirectoryOf(fileName);
    return true;
}

}  // namespace vorna
