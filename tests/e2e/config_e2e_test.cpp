#include <gtest/gtest.h>
#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <functional>
#include <iterator>
#include <tuple>

#include "e2e/module_host.h"
#include "support/xml_text.h"

using namespace vorna_test;

namespace {

const char* const kConfigFile = "VORNA.xml";

// Two cameras as the file keeps them, stream-printed up to the protocol list
// (no protocol until the host binds the ports, so 99 presets each).
const std::string kTwoCameras =
    R"(<?xml ?><Tarn Delta="0"><PTZ ID="1048576" OPCODE_MAX="74"><Devices ID="1"><Device Number="1">)"
    R"(<Input Number="1" Protocol="" SerialPort="COM1" Address="3" Presets="99" TourDwell="10" TourEnabled="0" )"
    R"(TourIdle="60"><Preset Number="1" Name="Door" /></Input><Input Number="2" Protocol="" SerialPort="COM1" )"
    R"(Address="4" Presets="99" TourDwell="10" TourEnabled="0" TourIdle="60" /></Device></Devices>)";

// Switches the tour of camera 1/1/2 on.
const std::string kTourOn = R"(<Tarn Delta="1"><PTZ ID="1048576"><Devices ID="1"><Device Number="1">)"
                            R"(<Input Number="2" TourEnabled="1"/></Device></Devices></PTZ></Tarn>)";

std::string ReadFile(const char* name) {
    std::ifstream in(name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// The log lines (type 0x40) or configuration notices (0x100, which the
// announcement shares under other flags) that the module sent.
std::vector<std::string> Payloads(ModuleHost& host, uint64_t type) {
    std::vector<std::string> payloads;
    for (auto& m : host.SentOfType(type))
        if (m.record.flags == VORNA_FLAGS_NOTICE) payloads.push_back(m.payload);
    return payloads;
}

// A started module in a fresh working directory, from `file` if given.
struct OpenModule {
    explicit OpenModule(const std::string& file = "") {
        if (!file.empty()) std::ofstream(kConfigFile, std::ios::binary) << file;
        host.Load();
        host.open();
    }
    ~OpenModule() {
        host.close();
        host.unload();
    }
    ScopedWorkDir dir;
    ModuleHost host;
};

}  // namespace

// Open without a file writes one and sends one notice; an update that changes
// nothing, or does not parse, saves and sends nothing.
TEST(ConfigE2E, OpenWritesAndSendsOnceAndUpdatesThatChangeNothingSaveNothing) {
    OpenModule module;
    const auto notices = Payloads(module.host, VORNA_TYPE_CONFIG);
    ASSERT_EQ(notices.size(), 1u);
    EXPECT_EQ(module.host.SentOfType(VORNA_TYPE_CONFIG).back().record.stream, 0x100000u);
    const std::string noCameras =
        R"(<?xml ?><Tarn Delta="0"><PTZ ID="1048576" OPCODE_MAX="74"><Protocol Name="AD-M3200" )";
    EXPECT_EQ(notices[0].rfind(noCameras, 0), 0u);
    EXPECT_EQ(Flattened(ReadFile(kConfigFile)), notices[0]);

    std::ofstream(kConfigFile) << "untouched";
    for (const std::string update :
         {R"(<Tarn Delta="1"><PTZ ID="1048576"><Devices ID="1"><Device Number="1"><Input SerialPort="COM1" )"
          R"(Address="3"/></Device></Devices></PTZ></Tarn>)",
          R"(<Tarn Delta="0"><Serial ID="851968"><Input><Device Port="COM7" Protocol="Pelco-D" Use="2"/>)"
          R"(</Input></Serial></Tarn>)",
          R"(<Tarn Delta="1")", ""})
        module.host.Ioctl(VORNA_IOCTL_UPDATE_CONFIG, update);
    std::string deep;
    for (int i = 0; i < 200000; ++i) deep += "<Tarn>";
    module.host.Ioctl(VORNA_IOCTL_UPDATE_CONFIG, deep);
    EXPECT_EQ(Payloads(module.host, VORNA_TYPE_CONFIG).size(), 1u);
    EXPECT_EQ(ReadFile(kConfigFile), "untouched");
    EXPECT_EQ(Payloads(module.host, VORNA_TYPE_LOG),
              (std::vector<std::string>{
                  R"(<log_msg level="75">update config parse error Error parsing Element.</log_msg>)",
                  R"(<log_msg level="75">update config parse error Elements nested too deeply (exceeds the )"
                  R"(configured maximum parse depth).</log_msg>)"}));
}

// The host refusing the notice changes nothing but a line on standard error.
TEST(ConfigE2E, UpdateRewritesTheWholeFileAndSendsTheWholeDocument) {
    OpenModule module(kTwoCameras + "</PTZ></Tarn>");
    module.host.ClearSent();
    module.host.callbackResult = 5;
    testing::internal::CaptureStderr();
    module.host.Ioctl(VORNA_IOCTL_UPDATE_CONFIG, kTourOn);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "VORNA: config event ret 5\n");
    module.host.callbackResult = 0;
    const auto notices = Payloads(module.host, VORNA_TYPE_CONFIG);
    ASSERT_EQ(notices.size(), 1u);
    std::string expected = kTwoCameras;
    expected.replace(expected.rfind("TourEnabled=\"0\""), 15, "TourEnabled=\"1\"");
    EXPECT_EQ(notices[0].rfind(expected, 0), 0u);
    EXPECT_EQ(Flattened(ReadFile(kConfigFile)), notices[0]);
}

// A side file that cannot be created (a directory stands in its way) fails
// the save: the host still gets the new document, the file keeps the old one,
// and the next start works from the old one.
TEST(ConfigE2E, FailedSaveStillNotifiesAndTheNextStartLoadsTheOldFile) {
    OpenModule module(kTwoCameras + "</PTZ></Tarn>");
    const std::string started = ReadFile(kConfigFile);
    ASSERT_EQ(mkdir("VORNA.xml.pending", 0700), 0);
    module.host.ClearSent();
    module.host.Ioctl(VORNA_IOCTL_UPDATE_CONFIG, kTourOn);
    const auto notices = Payloads(module.host, VORNA_TYPE_CONFIG);
    ASSERT_EQ(notices.size(), 1u);
    EXPECT_NE(notices[0].find(R"(Address="4" Presets="99" TourDwell="10" TourEnabled="1")"), std::string::npos);
    EXPECT_EQ(ReadFile(kConfigFile), started);

    ASSERT_EQ(rmdir("VORNA.xml.pending"), 0);
    module.host.close();
    module.host.unload();
    module.host.ClearSent();
    module.host.Load();
    module.host.open();
    EXPECT_EQ(Payloads(module.host, VORNA_TYPE_CONFIG), std::vector<std::string>{Flattened(started)});
    EXPECT_EQ(ReadFile(kConfigFile), started);
}

namespace {

// File access as an unprivileged user has it, when `wanted`, so that a file
// without read permission stays unreadable even when the tests run as root.
struct UnprivilegedFileAccess {
    explicit UnprivilegedFileAccess(bool wanted) : active(wanted && geteuid() == 0) {
        if (active) setfsuid(65534);
    }
    ~UnprivilegedFileAccess() {
        if (active) setfsuid(0);
    }
    const bool active;
};

}  // namespace

// A configuration file that does not load is kept as "VORNA.xml.bad" (an
// older one replaced) and reported; the start then goes on with an empty
// table. A good file, or a good one beside a side file that does not parse,
// starts as always.
TEST(ConfigE2E, AFileThatDoesNotLoadIsKeptAsideAndReported) {
    const std::string good = kTwoCameras + "</PTZ></Tarn>";
    std::string missingBracket = good;
    missingBracket.erase(missingBracket.find("/></Device>") + 1, 1);
    struct Row {
        const char* name;
        std::string file;
        std::string sideFile;  // empty: none
        mode_t mode;
        std::string loadError;  // empty: the file loads
    };
    const std::vector<Row> rows = {
        {"good", good, "", 0644, ""},
        {"side file that does not parse", good, "<Tarn", 0644, ""},
        {"truncated", kTwoCameras, "", 0644, "Error reading Element value."},
        {"bad byte", missingBracket, "", 0644, "Error: empty tag. (row 1, column 372)"},
        {"unreadable", good, "", 0, "Failed to open file"},
    };
    for (const Row& row : rows) {
        ScopedWorkDir dir;
        chmod(dir.path.c_str(), 0777);
        std::ofstream(kConfigFile, std::ios::binary) << row.file;
        chmod(kConfigFile, row.mode);
        std::ofstream("VORNA.xml.bad") << "older";
        if (!row.sideFile.empty()) std::ofstream("VORNA.xml.pending") << row.sideFile;
        ModuleHost host;
        host.Load();
        {
            UnprivilegedFileAccess unprivileged(row.mode == 0);
            host.open();
        }
        const bool loads = row.loadError.empty();
        const auto notices = Payloads(host, VORNA_TYPE_CONFIG);
        ASSERT_EQ(notices.size(), 1u) << row.name;
        EXPECT_EQ(notices[0].find("<Input") != std::string::npos, loads) << row.name;
        EXPECT_EQ(Flattened(ReadFile(kConfigFile)), notices[0]) << row.name;
        EXPECT_EQ(ReadFile("VORNA.xml.bad"), loads ? "older" : row.file) << row.name;
        EXPECT_EQ(ReadFile("VORNA.xml.pending"), "") << row.name << ": the save at start replaced it";
        std::vector<std::string> logs;
        if (!loads)
            logs.push_back(R"(<log_msg level="75">config file VORNA.xml load error )" + row.loadError +
                           ", kept as VORNA.xml.bad</log_msg>");
        EXPECT_EQ(Payloads(host, VORNA_TYPE_LOG), logs) << row.name;
        host.close();
        host.unload();
    }
}

// A save that fails is reported with its reason, and the notice still follows.
TEST(ConfigE2E, AFailedSaveIsReportedBeforeTheNotice) {
    const std::vector<std::tuple<const char*, std::function<void()>, std::string>> rows = {
        {"side file cannot be created", [] { mkdir("VORNA.xml.pending", 0700); },
         "config save error create error 21 - Is a directory"},
        {"file cannot be replaced",
         [] {
             unlink(kConfigFile);
             mkdir(kConfigFile, 0700);
             std::ofstream("VORNA.xml/inside") << "x";
         },
         "config save error Failed to rename .xml.pending to .xml file 21 - Is a directory"},
    };
    for (const auto& [name, obstruct, log] : rows) {
        OpenModule module(kTwoCameras + "</PTZ></Tarn>");
        obstruct();
        module.host.ClearSent();
        module.host.Ioctl(VORNA_IOCTL_UPDATE_CONFIG, kTourOn);
        const auto sent = module.host.Sent();
        ASSERT_EQ(sent.size(), 2u) << name;
        EXPECT_EQ(sent[0].payload, R"(<log_msg level="75">)" + log + "</log_msg>") << name;
        EXPECT_EQ(sent[1].record.type, VORNA_TYPE_CONFIG) << name;
    }
}

// A file reached through symbolic links is replaced where it lies, the links
// stay links, and the new file keeps the old one's permission bits.
TEST(ConfigE2E, SavingThroughLinksKeepsTheLinksAndThePermissions) {
    ScopedWorkDir dir;
    mkdir("site", 0700);
    std::ofstream("site/real.xml") << kTwoCameras + "</PTZ></Tarn>";
    chmod("site/real.xml", 0640);
    ASSERT_EQ(symlink("real.xml", "site/current"), 0);
    ASSERT_EQ(symlink("site/current", kConfigFile), 0);
    ModuleHost host;
    host.Load();
    host.open();
    const auto notices = Payloads(host, VORNA_TYPE_CONFIG);
    ASSERT_EQ(notices.size(), 1u);
    EXPECT_NE(notices[0].find(R"(Name="Door")"), std::string::npos);
    EXPECT_EQ(Flattened(ReadFile("site/real.xml")), notices[0]);
    struct stat info;
    ASSERT_EQ(lstat(kConfigFile, &info), 0);
    EXPECT_TRUE(S_ISLNK(info.st_mode));
    ASSERT_EQ(lstat("site/current", &info), 0);
    EXPECT_TRUE(S_ISLNK(info.st_mode));
    ASSERT_EQ(stat("site/real.xml", &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0640u);
    EXPECT_EQ(ReadFile("site/real.xml.pending") + ReadFile("VORNA.xml.pending"), "");
    host.close();
    host.unload();
}

// A preset name in a single-byte code page is kept as UTF-8, so the file the
// module wrote loads at the next start with the name intact.
TEST(ConfigE2E, Latin1PresetNameSurvivesARestart) {
    OpenModule module;
    module.host.Ioctl(VORNA_IOCTL_UPDATE_CONFIG,
                      "<Tarn Delta=\"1\"><PTZ ID=\"1048576\"><Devices ID=\"1\"><Device Number=\"1\"><Input "
                      "Number=\"1\"><Preset Number=\"1\" Name=\"Entr\xE9" "e\"/></Input></Device></Devices></PTZ></Tarn>");
    module.host.close();
    module.host.unload();
    module.host.ClearSent();
    module.host.Load();
    module.host.open();
    const auto notices = Payloads(module.host, VORNA_TYPE_CONFIG);
    ASSERT_EQ(notices.size(), 1u);
    EXPECT_NE(notices[0].find("<Preset Number=\"1\" Name=\"Entr\xC3\xA9" "e\" />"), std::string::npos) << notices[0];
}
