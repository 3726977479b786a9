#include "config/safe_file.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

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
