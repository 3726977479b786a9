#include "config/safe_file.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "config/file_system.h"
#include "host/host_sender.h"

namespace vorna {

namespace {

const char* const kSideFileSuffix = ".pending";

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

// The directory that holds `fileName`.
std::string DirectoryOf(const std::string& fileName) {
    const size_t slash = fileName.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : fileName.substr(0, slash);
}

// Writes `text` to a new side file and forces it to disk. A flush or sync
// that fails fails the save: a document smaller than the stream's buffer only
// reaches the disk there.
void WriteSideFile(FileSystem& files, const std::string& path, const std::string& text, FirstFailure& failure) {
    FILE* file = files.Open(path, "wb");
    if (file == nullptr) {
        failure.Record("create error");
        return;
    }
    const size_t written = files.Write(text.data(), text.size(), file);
    if (std::ferror(file)) failure.Record("write error");
    if (files.Flush(file) != 0 || std::ferror(file)) failure.Record("write error");
    if (files.Sync(file) != 0) failure.Record("write error");
    if (files.Close(file) != 0) failure.Record("close error");
    if (written != text.size()) failure.Set(Format("only wrote %zu of %zu bytes", written, text.size()));
}

}  // namespace

bool LoadDocument(XmlDocument& document, const std::string& fileName) {
    const std::string sideFile = fileName + kSideFileSuffix;
    if (document.LoadPath(sideFile)) {
        CurrentFileSystem().Rename(sideFile, fileName);
        return true;
    }
    return document.LoadPath(fileName);
}

bool SaveDocument(XmlDocument& document, const std::string& fileName) {
    FileSystem& files = CurrentFileSystem();
    const std::string sideFile = fileName + kSideFileSuffix;
    FirstFailure failure;
    TiXmlPrinter indented;
    document.Accept(&indented);
    WriteSideFile(files, sideFile, indented.Str(), failure);
    if (failure.Failed()) {
        files.Unlink(sideFile);
        document.SetModuleError(kErrorSaveFailed, failure.Message());
        return false;
    }
    // No side file left to rename counts as done: a load moves a complete
    // side file into place as well.
    if (files.Rename(sideFile, fileName) != 0 && errno != ENOENT) {
        // The side file stays, so the next load picks the new content up.
        document.SetModuleError(kErrorSaveFailed, ErrnoMessage("Failed to rename .xml.pending to .xml file"));
        return false;
    }
    // The rename itself must survive a power loss; a directory that cannot
    // be synced changes nothing about the result.
    files.SyncDirectory(DirectoryOf(fileName));
    return true;
}

}  // namespace vorna
