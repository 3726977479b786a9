#include "config/safe_file.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>
#include <vector>

#include "env/environment.h"
#include "support/temp_dir.h"

using namespace vorna;
using vorna_test::TempDir;

namespace {

// Fails one chosen call of the safe save with a chosen errno and passes every
// other call to the real file system, for the lifetime of the object.
//
// A failing write fails the disk under the side file rather than the fwrite
// call, so the stream's own buffering decides who sees it, as on a full disk:
// fflush for a document smaller than the buffer, fwrite for a larger one.
class FailingFileSystem : public PosixFileSystem {
public:
    enum class Call {
        kNothing, kOpen, kWrite, kFlush, kSync, kClose, kRename, kDirectorySync, kReadLink, kStat, kChangeMode
    };

    FailingFileSystem(Call call, int error) : call_(call), error_(error) {}

    FILE* Open(const std::string& path, const char* mode) override {
        if (Fails(Call::kOpen)) return nullptr;
        if (call_ != Call::kWrite) return PosixFileSystem::Open(path, mode);
        close(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666));
        return fopencookie(this, mode, {nullptr, &RefuseWrite, nullptr, nullptr});
    }
    int Flush(FILE* file) override { return Fails(Call::kFlush) ? EOF : PosixFileSystem::Flush(file); }
    // Syncs that do not fail succeed without touching the disk: the table
    // checks what each outcome leaves behind, not durability, and hundreds
    // of real syncs would make it slow.
    int Sync(FILE*) override { return Fails(Call::kSync) ? -1 : 0; }
    int Close(FILE* file) override { return PosixFileSystem::Close(file) != 0 || Fails(Call::kClose) ? EOF : 0; }
    int Rename(const std::string& from, const std::string& to) override {
        return Fails(Call::kRename) ? -1 : PosixFileSystem::Rename(from, to);
    }
    int SyncDirectory(const std::string&) override {
        return Fails(Call::kDirectorySync) ? -1 : 0;
    }
    int ReadLink(const std::string& path, std::string& target) override {
        return Fails(Call::kReadLink) ? -1 : PosixFileSystem::ReadLink(path, target);
    }
    int Stat(const std::string& path, struct stat& info) override {
        return Fails(Call::kStat) ? -1 : PosixFileSystem::Stat(path, info);
    }
    int ChangeMode(FILE* file, mode_t mode) override {
        return Fails(Call::kChangeMode) ? -1 : PosixFileSystem::ChangeMode(file, mode);
    }

private:
    // No byte taken: glibc reads a cookie write of 0 as the error, while -1
    // would be counted as bytes written on its direct-write path.
    static ssize_t RefuseWrite(void* self, const char*, size_t) {
        errno = static_cast<FailingFileSystem*>(self)->error_;
        return 0;
    }

    // True, with errno set, when `call` is the one to fail.
    bool Fails(Call call) const {
        if (call != call_) return false;
        errno = error_;
        return true;
    }

    Call call_;
    int error_;
    ScopedEnvironment installed_{*this};
};

using Call = FailingFileSystem::Call;

// The errnos a save meets in the field.
const int kErrnos[] = {ENOSPC, EIO, EDQUOT, EACCES, EROFS, EXDEV, EISDIR};

// What a failing call makes of the save: the start of the message before
// "<errno> - <text>", or none when the save still succeeds.
struct CallOutcome {
    Call call;
    const char* message;
};

const CallOutcome kOutcomes[] = {
    {Call::kOpen, "create error"},
    {Call::kWrite, "write error"},
    {Call::kFlush, "write error"},
    {Call::kSync, "write error"},
    {Call::kClose, "close error"},
    {Call::kRename, "Failed to rename .xml.pending to .xml file"},
    {Call::kDirectorySync, nullptr},
    {Call::kStat, nullptr},
    {Call::kChangeMode, nullptr},
};

std::string Message(const CallOutcome& outcome, int error) {
    if (outcome.message == nullptr) return "";
    return std::string(outcome.message) + " " + std::to_string(error) + " - " + std::strerror(error);
}

mode_t ModeOf(const std::string& path) {
    struct stat info;
    return stat(path.c_str(), &info) == 0 ? info.st_mode & 07777 : 0;
}

bool IsLink(const std::string& path) {
    struct stat info;
    return lstat(path.c_str(), &info) == 0 && S_ISLNK(info.st_mode);
}

const char* const kOld = "<Tarn Delta=\"0\" Version=\"old\" />\n";

// A configuration of `inputs` cameras: 1 fits one stdio buffer, 500 need
// several of them.
XmlDocument DocumentOfSize(int inputs) {
    std::string text = "<Tarn Delta=\"0\"><PTZ ID=\"1048576\"><Devices ID=\"1\"><Device Number=\"1\">";
    for (int i = 1; i <= inputs; ++i) text += "<Input Number=\"" + std::to_string(i) + "\" SerialPort=\"COM1\" />";
    text += "</Device></Devices></PTZ></Tarn>";
    XmlDocument document;
    EXPECT_TRUE(document.ParseText(text.data(), text.size()));
    return document;
}

}  // namespace

// Every call of the save failing with every errno that matters: a failure
// leaves the file byte for byte as it was (a failed rename leaves the new
// content in the side file, which the next load moves into place), the same
// when "VORNA.xml" is a link to a file elsewhere with permission bits of its
// own: the link stays a link, the file behind it keeps its bits.
TEST(SafeFile, AnyFailingCallLeavesTheFileAsItWas) {
    for (const bool throughLink : {false, true}) {
        for (const int inputs : {1, 500}) {
            TiXmlPrinter printer;
            DocumentOfSize(inputs).Accept(&printer);
            const std::string text = printer.Str();
            std::vector<std::pair<CallOutcome, int>> cases = {{{Call::kNothing, nullptr}, 0}};
            for (const CallOutcome& outcome : kOutcomes)
                for (const int error : kErrnos) cases.push_back({outcome, error});
            if (!throughLink)
                for (const int error : kErrnos) cases.push_back({{Call::kReadLink, nullptr}, error});
            for (const auto& [outcome, error] : cases) {
                const std::string message = Message(outcome, error);
                const std::string name = std::string(throughLink ? "link: " : "") + message + " (call " +
                                         std::to_string(static_cast<int>(outcome.call)) + ", errno " +
                                         std::to_string(error) + ") with " + std::to_string(text.size()) + " bytes";
                TempDir dir;
                const std::string file = throughLink ? "site/real.xml" : "VORNA.xml";
                ASSERT_EQ(mkdir(dir.File("site").c_str(), 0700), 0);
                dir.Write(file, kOld);
                ASSERT_EQ(chmod(dir.File(file).c_str(), 0640), 0);
                if (throughLink) {
                    ASSERT_EQ(symlink("site/real.xml", dir.File("VORNA.xml").c_str()), 0);
                }
                XmlDocument document = DocumentOfSize(inputs);
                bool saved;
                {
                    FailingFileSystem files(outcome.call, error);
                    saved = SaveDocument(document, dir.File("VORNA.xml"));
                }
                const bool succeeds = message.empty();
                const bool renameFailed = outcome.call == Call::kRename;
                const bool modeLost = outcome.call == Call::kStat || outcome.call == Call::kChangeMode;
                EXPECT_EQ(saved, succeeds) << name;
                EXPECT_EQ(document.ModuleErrorDesc(), message) << name;
                EXPECT_EQ(document.ModuleErrorId(), succeeds ? 0 : 2) << name << ": the safe save's error id";
                EXPECT_FALSE(document.Error()) << name << ": TinyXML's own flag is left alone";
                EXPECT_EQ(dir.Read(file), succeeds ? text : kOld) << name;
                EXPECT_EQ(dir.Read(file + ".pending"), renameFailed ? text : "(missing)") << name;
                EXPECT_FALSE(dir.Exists("VORNA.xml.pending") && throughLink) << name;
                EXPECT_EQ(IsLink(dir.File("VORNA.xml")), throughLink) << name;
                if (!modeLost) {
                    EXPECT_EQ(ModeOf(dir.File(file)), 0640u) << name;
                }
                XmlDocument next;
                EXPECT_TRUE(LoadDocument(next, dir.File("VORNA.xml"))) << name;
                EXPECT_EQ(dir.Read(file), succeeds || renameFailed ? text : kOld) << name << ", loaded again";
                EXPECT_FALSE(dir.Exists(file + ".pending")) << name << ", loaded again";
            }
        }
    }
}
