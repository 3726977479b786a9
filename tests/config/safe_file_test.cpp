#include "config/safe_file.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <tuple>

#include "config/file_system.h"
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
    enum class Call { kNothing, kOpen, kWrite, kFlush, kSync, kClose, kRename, kDirectorySync };

    FailingFileSystem(Call call, int error) : call_(call), error_(error) { SetFileSystem(this); }
    ~FailingFileSystem() override { SetFileSystem(nullptr); }

    FILE* Open(const std::string& path, const char* mode) override {
        if (Fails(Call::kOpen)) return nullptr;
        if (call_ != Call::kWrite) return PosixFileSystem::Open(path, mode);
        close(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666));
        return fopencookie(this, mode, {nullptr, &RefuseWrite, nullptr, nullptr});
    }
    int Flush(FILE* file) override { return Fails(Call::kFlush) ? EOF : PosixFileSystem::Flush(file); }
    int Sync(FILE* file) override { return Fails(Call::kSync) ? -1 : PosixFileSystem::Sync(file); }
    int Close(FILE* file) override { return PosixFileSystem::Close(file) != 0 || Fails(Call::kClose) ? EOF : 0; }
    int Rename(const std::string& from, const std::string& to) override {
        return Fails(Call::kRename) ? -1 : PosixFileSystem::Rename(from, to);
    }
    int SyncDirectory(const std::string& path) override {
        return Fails(Call::kDirectorySync) ? -1 : PosixFileSystem::SyncDirectory(path);
    }

private:
    static ssize_t RefuseWrite(void* self, const char*, size_t) {
        errno = static_cast<FailingFileSystem*>(self)->error_;
        return -1;
    }

    // True, with errno set, when `call` is the one to fail.
    bool Fails(Call call) const {
        if (call != call_) return false;
        errno = error_;
        return true;
    }

    Call call_;
    int error_;
};

const char* const kOld = "<Tarn Delta=\"0\" Version=\"old\" />\n";

// A configuration of `inputs` cameras: 1 fits one stdio buffer, 5000 need
// dozens of them.
XmlDocument DocumentOfSize(int inputs) {
    std::string text = "<Tarn Delta=\"0\"><PTZ ID=\"1048576\"><Devices ID=\"1\"><Device Number=\"1\">";
    for (int i = 1; i <= inputs; ++i) text += "<Input Number=\"" + std::to_string(i) + "\" SerialPort=\"COM1\" />";
    text += "</Device></Devices></PTZ></Tarn>";
    XmlDocument document;
    EXPECT_TRUE(document.ParseText(text.data(), text.size()));
    return document;
}

}  // namespace

TEST(SafeFile, LoadIgnoresAnUnparsableSideFileAndLeavesIt) {
    TempDir dir;
    XmlDocument document;
    EXPECT_FALSE(LoadDocument(document, dir.File("VORNA.xml")));
    dir.Write("VORNA.xml", kOld);
    dir.Write("VORNA.xml.pending", "<Tarn");
    ASSERT_TRUE(LoadDocument(document, dir.File("VORNA.xml")));
    EXPECT_STREQ(document.RootElement()->Attribute("Version"), "old");
    EXPECT_EQ(dir.Read("VORNA.xml.pending"), "<Tarn");
}

// A failed rename leaves the side file, and the next load moves it into place;
// any other failure leaves the old file.
TEST(SafeFile, AnyFailingCallLeavesTheFileAsItWas) {
    using Call = FailingFileSystem::Call;
    // The call that fails, its errno, and the message; no message: the save succeeds.
    const std::vector<std::tuple<Call, int, std::string>> rows = {
        {Call::kNothing, 0, ""},
        {Call::kWrite, ENOSPC, "write error 28 - No space left on device"},
        {Call::kWrite, EIO, "write error 5 - Input/output error"},
        {Call::kWrite, EDQUOT, "write error 122 - Disk quota exceeded"},
        {Call::kFlush, ENOSPC, "write error 28 - No space left on device"},
        {Call::kFlush, EIO, "write error 5 - Input/output error"},
        {Call::kFlush, EDQUOT, "write error 122 - Disk quota exceeded"},
        {Call::kSync, ENOSPC, "write error 28 - No space left on device"},
        {Call::kSync, EIO, "write error 5 - Input/output error"},
        {Call::kSync, EDQUOT, "write error 122 - Disk quota exceeded"},
        {Call::kClose, ENOSPC, "close error 28 - No space left on device"},
        {Call::kClose, EIO, "close error 5 - Input/output error"},
        {Call::kClose, EDQUOT, "close error 122 - Disk quota exceeded"},
        {Call::kOpen, EACCES, "create error 13 - Permission denied"},
        {Call::kOpen, EROFS, "create error 30 - Read-only file system"},
        {Call::kOpen, EXDEV, "create error 18 - Invalid cross-device link"},
        {Call::kRename, EACCES, "Failed to rename .xml.pending to .xml file 13 - Permission denied"},
        {Call::kRename, EROFS, "Failed to rename .xml.pending to .xml file 30 - Read-only file system"},
        {Call::kRename, EXDEV, "Failed to rename .xml.pending to .xml file 18 - Invalid cross-device link"},
        {Call::kDirectorySync, EIO, ""},
    };
    for (const int inputs : {1, 5000}) {
        TiXmlPrinter printer;
        DocumentOfSize(inputs).Accept(&printer);
        const std::string text = printer.Str();
        for (const auto& [call, error, message] : rows) {
            const std::string name = message + " with " + std::to_string(text.size()) + " bytes";
            TempDir dir;
            dir.Write("VORNA.xml", kOld);
            XmlDocument document = DocumentOfSize(inputs);
            bool saved;
            {
                FailingFileSystem files(call, error);
                saved = SaveDocument(document, dir.File("VORNA.xml"));
            }
            const bool succeeds = message.empty();
            const bool renameFailed = call == Call::kRename;
            EXPECT_EQ(saved, succeeds) << name;
            EXPECT_EQ(document.ModuleErrorDesc(), message) << name;
            EXPECT_FALSE(document.Error()) << name << ": TinyXML's own flag is left alone";
            EXPECT_EQ(dir.Read("VORNA.xml"), succeeds ? text : kOld) << name;
            EXPECT_EQ(dir.Read("VORNA.xml.pending"), renameFailed ? text : "(missing)") << name;
            XmlDocument next;
            EXPECT_TRUE(LoadDocument(next, dir.File("VORNA.xml"))) << name;
            EXPECT_EQ(dir.Read("VORNA.xml"), succeeds || renameFailed ? text : kOld) << name << ", loaded again";
            EXPECT_FALSE(dir.Exists("VORNA.xml.pending")) << name << ", loaded again";
        }
    }
}
