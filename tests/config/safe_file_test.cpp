#include "config/safe_file.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include "support/failing_file_system.h"
#include "support/temp_dir.h"

using namespace vorna;
using vorna_test::TempDir;

namespace {

const char* const kOld = "<Tarn Delta=\"0\" Version=\"old\" />\n";
const char* const kNew = "<Tarn Delta=\"0\" Version=\"new\" />\n";

XmlDocument NewDocument() {
    XmlDocument document;
    EXPECT_TRUE(document.ParseText(kNew, strlen(kNew)));
    return document;
}

std::string Version(const XmlDocument& document) {
    const char* version = document.RootElement() ? document.RootElement()->Attribute("Version") : nullptr;
    return version ? version : "(none)";
}

}  // namespace

TEST(SafeFile, SaveWritesIndentedDocumentAndNoSideFile) {
    TempDir dir;
    dir.Write("VORNA.xml", kOld);
    XmlDocument document;
    const std::string text = "<?xml ?><Tarn Delta=\"0\"><PTZ ID=\"1\"><Devices ID=\"2\" /></PTZ></Tarn>";
    ASSERT_TRUE(document.ParseText(text.data(), text.size()));
    EXPECT_TRUE(SaveDocument(document, dir.File("VORNA.xml")));
    EXPECT_EQ(dir.Read("VORNA.xml"),
              "<?xml ?>\n<Tarn Delta=\"0\">\n    <PTZ ID=\"1\">\n        <Devices ID=\"2\" />\n    </PTZ>\n</Tarn>\n");
    EXPECT_FALSE(dir.Exists("VORNA.xml.pending"));
    EXPECT_EQ(document.ModuleErrorId(), 0);
}

TEST(SafeFile, LoadPrefersAParsableSideFile) {
    struct Row {
        const char* name;
        const char* file;     // null: no such file
        const char* pending;  // null: no such file
        bool loaded;
        const char* version;
        const char* fileAfter;
        bool pendingLeft;
    };
    const std::vector<Row> rows = {
        {"side file wins and replaces the file", kOld, kNew, true, "new", kNew, false},
        {"side file alone", nullptr, kNew, true, "new", kNew, false},
        {"unparsable side file is ignored and left", kOld, "<Tarn", true, "old", kOld, true},
        {"no side file", kOld, nullptr, true, "old", kOld, false},
        {"nothing at all", nullptr, nullptr, false, "(none)", "(missing)", false},
        {"unparsable file", "<Tarn><", nullptr, false, "(none)", "<Tarn><", false},
    };
    for (const Row& row : rows) {
        TempDir dir;
        if (row.file) dir.Write("VORNA.xml", row.file);
        if (row.pending) dir.Write("VORNA.xml.pending", row.pending);
        XmlDocument document;
        EXPECT_EQ(LoadDocument(document, dir.File("VORNA.xml")), row.loaded) << row.name;
        EXPECT_EQ(Version(document), row.version) << row.name;
        EXPECT_EQ(dir.Read("VORNA.xml"), row.fileAfter) << row.name;
        EXPECT_EQ(dir.Exists("VORNA.xml.pending"), row.pendingLeft) << row.name;
    }
}

TEST(SafeFile, UncreatableSideFileFailsAndLeavesTheFile) {
    TempDir dir;
    dir.Write("VORNA.xml", kOld);
    ASSERT_EQ(mkdir(dir.File("VORNA.xml.pending").c_str(), 0700), 0);
    XmlDocument document = NewDocument();
    EXPECT_FALSE(SaveDocument(document, dir.File("VORNA.xml")));
    EXPECT_EQ(document.ModuleErrorId(), kErrorSaveFailed);
    EXPECT_EQ(document.ModuleErrorDesc(), "create error 21 - Is a directory");
    EXPECT_FALSE(document.Error()) << "TinyXML's own flag is left alone";
    EXPECT_EQ(dir.Read("VORNA.xml"), kOld);

    XmlDocument elsewhere = NewDocument();
    EXPECT_FALSE(SaveDocument(elsewhere, dir.File("missing/VORNA.xml")));
    EXPECT_EQ(elsewhere.ModuleErrorDesc(), "create error 2 - No such file or directory");
    EXPECT_FALSE(dir.Exists("missing"));
}

TEST(SafeFile, FailedRenameKeepsTheSideFileForTheNextLoad) {
    TempDir dir;
    ASSERT_EQ(mkdir(dir.File("VORNA.xml").c_str(), 0700), 0);
    dir.Write("VORNA.xml/occupied", "");
    XmlDocument document = NewDocument();
    EXPECT_FALSE(SaveDocument(document, dir.File("VORNA.xml")));
    EXPECT_EQ(document.ModuleErrorDesc(), "Failed to rename .xml.pending to .xml file 21 - Is a directory");
    EXPECT_EQ(dir.Read("VORNA.xml.pending"), kNew);

    XmlDocument loaded;
    EXPECT_TRUE(LoadDocument(loaded, dir.File("VORNA.xml")));
    EXPECT_EQ(Version(loaded), "new");
}

namespace {

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

std::string Indented(const XmlDocument& document) {
    TiXmlPrinter printer;
    document.Accept(&printer);
    return printer.Str();
}

}  // namespace

TEST(SafeFile, AnyFailingCallLeavesTheFileAsItWas) {
    using Call = vorna_test::FailingFileSystem::Call;
    struct Row {
        Call call;
        int error;
        const char* message;  // empty: the save succeeds
    };
    const std::vector<Row> rows = {
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
        const std::string text = Indented(DocumentOfSize(inputs));
        for (const Row& row : rows) {
            const std::string name = std::string(row.message) + " with " + std::to_string(text.size()) + " bytes";
            TempDir dir;
            dir.Write("VORNA.xml", kOld);
            XmlDocument document = DocumentOfSize(inputs);
            const bool saved = [&] {
                vorna_test::FailingFileSystem files(row.call, row.error);
                return SaveDocument(document, dir.File("VORNA.xml"));
            }();
            const bool succeeds = *row.message == '\0';
            const bool renameFailed = row.call == Call::kRename;
            EXPECT_EQ(saved, succeeds) << name;
            EXPECT_EQ(document.ModuleErrorDesc(), row.message) << name;
            EXPECT_EQ(dir.Read("VORNA.xml"), succeeds ? text : kOld) << name;
            EXPECT_EQ(dir.Read("VORNA.xml.pending"), renameFailed ? text : "(missing)") << name;
        }
    }
}
