#include "config/safe_file.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "env/environment.h"
#include "host/host_sender.h"

namespace vorna {

namespace {

const char* const kSideFileSuffix = ".pending";

// TinyXML's default printer, releasing each node as soon as everything after
// it is printed too: the text grows while the tree shrinks, so that a site's
// configuration is never held twice over while it is saved. TinyXML's walk
// still needs the node it has just left, to find the next one, but none
// before it.
class ReleasingPrinter : public TiXmlPrinter {
public:
    bool VisitExit(const TiXmlElement& element) override {
        const bool goOn = TiXmlPrinter::VisitExit(element);
        TiXmlNode* printed = const_cast<TiXmlElement&>(element).PreviousSibling();
        if (printed != nullptr) printed->Parent()->RemoveChild(printed);
        return goOn;
    }
};

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

// As many links as the kernel follows in one path before it gives up.
constexpr int kMaxLinkHops = 40;

// The file that `fileName` finally names when it is a symbolic link (a chain
// of them included), so that a save replaces the file and the link stays a
// link. A name that is no link, and a chain that loops, stay as they are.
std::string FinalTarget(FileSystem& files, const std::string& fileName) {
    std::string path = fileName;
    for (int hop = 0; hop < kMaxLinkHops; ++hop) {
        std::string target;
        if (files.ReadLink(path, target) != 0) return path;
        const size_t slash = path.rfind('/');
        const bool relative = target.empty() || target[0] != '/';
        path = relative && slash != std::string::npos ? path.substr(0, slash + 1) + target : target;
    }
    return fileName;
}

// The permission bits of the file a save replaces; none for a new file.
struct KeptMode {
    bool kept = false;
    mode_t mode = 0;
};

KeptMode ModeOf(FileSystem& files, const std::string& path) {
    struct stat info;
    if (files.Stat(path, info) != 0) return {};
    return {true, static_cast<mode_t>(info.st_mode & 07777)};
}

// Writes `text` to a new side file and forces it to disk. A flush or sync
// that fails fails the save: a document smaller than the stream's buffer only
// reaches the disk there.
// The side file takes the permission bits of the file it replaces; one
// that cannot take them still holds the operator's configuration, so that
// does not fail the save.
void WriteSideFile(FileSystem& files, const std::string& path, const std::string& text, KeptMode keptMode,
                   FirstFailure& failure) {
    FILE* file = files.Open(path, "wb");
    if (file == nullptr) {
        failure.Record("create error");
        return;
    }
    if (keptMode.kept) files.ChangeMode(file, keptMode.mode);
    const size_t written = files.Write(text.data(), text.size(), file);
    if (std::ferror(file)) failure.Record("write error");
    if (files.Flush(file) != 0 || std::ferror(file)) failure.Record("write error");
    if (files.Sync(file) != 0) failure.Record("write error");
    if (files.Close(file) != 0) failure.Record("close error");
    if (written != text.size()) failure.Set(Format("only wrote %zu of %zu bytes", written, text.size()));
}

}  // namespace

bool LoadDocument(XmlDocument& document, const std::string& fileName) {
    FileSystem& files = CurrentEnvironment().files();
    const std::string target = FinalTarget(files, fileName);
    const std::string sideFile = target + kSideFileSuffix;
    if (document.LoadPath(sideFile)) {
        files.Rename(sideFile, target);
        return true;
    }
    return document.LoadPath(fileName);
}

bool SaveDocument(XmlDocument& document, const std::string& fileName) {
    FileSystem& files = CurrentEnvironment().files();
    const std::string target = FinalTarget(files, fileName);
    const std::string sideFile = target + kSideFileSuffix;
    FirstFailure failure;
    ReleasingPrinter indented;
    document.Accept(&indented);
    document.Clear();
    WriteSideFile(files, sideFile, indented.Str(), ModeOf(files, target), failure);
    if (failure.Failed()) {
        files.Unlink(sideFile);
        document.SetModuleError(kErrorSaveFailed, failure.Message());
        return false;
    }
    // No side file left to rename counts as done: a load moves a complete
    // side file into place as well.
    if (files.Rename(sideFile, target) != 0 && errno != ENOENT) {
        // The side file stays, so the next load picks the new content up.
        document.SetModuleError(kErrorSaveFailed, ErrnoMessage("Failed to rename .xml.pending to .xml file"));
        return false;
    }
    // The rename itself must survive a power loss; a directory that cannot
    // be synced changes nothing about the result.
    files.SyncDirectory(DirectoryOf(target));
    return true;
}

}  // namespace vorna
