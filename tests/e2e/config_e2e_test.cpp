#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <iterator>

#include "e2e/module_host.h"
#include "support/xml_text.h"

using namespace vorna_test;

namespace {

const char* const kConfigFile = "VORNA.xml";

// Two cameras as the file keeps them (no protocol until the host binds the
// ports, so 99 presets each).
const char* const kTwoCameras =
    "<?xml ?>\n"
    "<Tarn Delta=\"0\">\n"
    "    <PTZ ID=\"1048576\" OPCODE_MAX=\"74\">\n"
    "        <Devices ID=\"1\">\n"
    "            <Device Number=\"1\">\n"
    "                <Input Number=\"1\" Protocol=\"\" SerialPort=\"COM1\" Address=\"3\" Presets=\"99\" "
    "TourDwell=\"10\" TourEnabled=\"0\" TourIdle=\"60\">\n"
    "                    <Preset Number=\"1\" Name=\"Door\" />\n"
    "                </Input>\n"
    "                <Input Number=\"2\" Protocol=\"\" SerialPort=\"COM1\" Address=\"4\" Presets=\"99\" "
    "TourDwell=\"10\" TourEnabled=\"0\" TourIdle=\"60\" />\n"
    "            </Device>\n"
    "        </Devices>\n";

std::string ReadFile(const char* name) {
    std::ifstream in(name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void WriteFile(const char* name, const std::string& content) { std::ofstream(name, std::ios::binary) << content; }

std::string Update(const std::string& inputs) {
    return "<Tarn Delta=\"1\"><PTZ ID=\"1048576\"><Devices ID=\"1\"><Device Number=\"1\">" + inputs +
           "</Device></Devices></PTZ></Tarn>";
}

std::vector<SentMessage> Notices(ModuleHost& host) {
    std::vector<SentMessage> notices;
    for (auto& m : host.SentOfType(VORNA_TYPE_CONFIG))
        if (m.record.flags == VORNA_FLAGS_NOTICE) notices.push_back(m);
    return notices;
}

std::vector<std::string> Logs(ModuleHost& host) {
    std::vector<std::string> logs;
    for (auto& m : host.SentOfType(VORNA_TYPE_LOG)) logs.push_back(m.payload);
    return logs;
}

// A started module in a fresh working directory.
struct OpenModule {
    explicit OpenModule(const char* file = nullptr) {
        if (file != nullptr) WriteFile(kConfigFile, file);
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

TEST(ConfigE2E, OpenWithoutFileWritesOneAndSendsOneNotice) {
    OpenModule module;
    const auto notices = Notices(module.host);
    ASSERT_EQ(notices.size(), 1u);
    const HostMessage& record = notices[0].record;
    EXPECT_EQ(record.size, 224u);
    EXPECT_EQ(record.version, 1u);
    EXPECT_EQ(record.stream, 0x100000u);
    EXPECT_EQ(record.length, notices[0].payload.size());
    EXPECT_EQ(notices[0].payload.rfind("<?xml ?><Tarn Delta=\"0\"><PTZ ID=\"1048576\" OPCODE_MAX=\"74\"><Protocol ", 0),
              0u);
    EXPECT_EQ(ReadFile(kConfigFile).rfind("<?xml ?>\n<Tarn Delta=\"0\">\n    <PTZ ID=\"1048576\" OPCODE_MAX=\"74\">\n"
                                          "        <Protocol ",
                                          0),
              0u);
    EXPECT_EQ(Flattened(ReadFile(kConfigFile)), notices[0].payload);
}

TEST(ConfigE2E, UpdateRewritesTheWholeFileAndSendsTheWholeDocument) {
    OpenModule module((std::string(kTwoCameras) + "    </PTZ>\n</Tarn>\n").c_str());
    module.host.ClearSent();
    module.host.Ioctl(VORNA_IOCTL_UPDATE_CONFIG, Update("<Input Number=\"2\" TourEnabled=\"1\"/>"));
    const auto notices = Notices(module.host);
    ASSERT_EQ(notices.size(), 1u);
    const std::string file = ReadFile(kConfigFile);
    EXPECT_NE(file.find("<Input Number=\"1\" Protocol=\"\" SerialPort=\"COM1\" Address=\"3\""), std::string::npos);
    EXPECT_NE(file.find("<Input Number=\"2\" Protocol=\"\" SerialPort=\"COM1\" Address=\"4\" Presets=\"99\" "
                        "TourDwell=\"10\" TourEnabled=\"1\""),
              std::string::npos);
    EXPECT_EQ(Flattened(ReadFile(kConfigFile)), notices[0].payload);
}

TEST(ConfigE2E, UpdatesThatChangeNothingSaveAndSendNothing) {
    const std::vector<std::string> updates = {
        Update("<Input SerialPort=\"COM1\" Address=\"3\"/>"),
        "<Tarn Delta=\"0\"><PTZ ID=\"1048576\"/></Tarn>",
        "<Tarn Delta=\"0\"><Serial ID=\"851968\"><Input><Device Port=\"COM7\" Protocol=\"Pelco-D\" Use=\"2\"/>"
        "</Input></Serial></Tarn>",
        "<Tarn><PTZ ID=\"1048576\"/></Tarn>",
        "<Tarn Delta=\"1\"",
        "",
    };
    OpenModule module;
    WriteFile(kConfigFile, "untouched");
    for (const std::string& update : updates) module.host.Ioctl(VORNA_IOCTL_UPDATE_CONFIG, update);
    EXPECT_EQ(Notices(module.host).size(), 1u) << "only the one from Open";
    EXPECT_EQ(ReadFile(kConfigFile), "untouched");
    const auto logs = Logs(module.host);
    ASSERT_EQ(logs.size(), 2u);
    EXPECT_EQ(logs[0], "<log_msg level=\"75\">Query delta attribute error </log_msg>");
    EXPECT_EQ(logs[1].rfind("<log_msg level=\"75\">update config parse error ", 0), 0u);
}

TEST(ConfigE2E, TooDeepUpdateIsRefusedCleanly) {
    OpenModule module;
    module.host.ClearSent();
    std::string deep;
    for (int i = 0; i < 200000; ++i) deep += "<Tarn>";
    module.host.Ioctl(VORNA_IOCTL_UPDATE_CONFIG, deep);
    EXPECT_EQ(Logs(module.host),
              std::vector<std::string>{"<log_msg level=\"75\">update config parse error Elements nested too deeply "
                                       "(exceeds the configured maximum parse depth).</log_msg>"});
}

TEST(ConfigE2E, RefusedNoticeIsReportedOnStandardError) {
    OpenModule module;
    module.host.callbackResult = 5;
    testing::internal::CaptureStderr();
    module.host.Ioctl(VORNA_IOCTL_UPDATE_CONFIG, Update("<Input Number=\"1\"/>"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "VORNA: config event ret 5\n");
    module.host.callbackResult = 0;
}

// A side file that cannot be created (a directory stands in its way) fails
// the save: the host still gets the new document, the file keeps the old one,
// and the next start works from the old one.
TEST(ConfigE2E, FailedSaveStillNotifiesAndTheNextStartLoadsTheOldFile) {
    const std::string oldFile = std::string(kTwoCameras) + "    </PTZ>\n</Tarn>\n";
    OpenModule module(oldFile.c_str());
    ASSERT_EQ(ReadFile(kConfigFile).rfind(kTwoCameras, 0), 0u);
    const std::string started = ReadFile(kConfigFile);
    ASSERT_EQ(mkdir("VORNA.xml.pending", 0700), 0);
    module.host.ClearSent();

    module.host.Ioctl(VORNA_IOCTL_UPDATE_CONFIG, Update("<Input Number=\"2\" TourEnabled=\"1\"/>"));
    auto notices = Notices(module.host);
    ASSERT_EQ(notices.size(), 1u);
    EXPECT_NE(notices[0].payload.find("Address=\"4\" Presets=\"99\" TourDwell=\"10\" TourEnabled=\"1\""),
              std::string::npos);
    EXPECT_EQ(ReadFile(kConfigFile), started);

    ASSERT_EQ(rmdir("VORNA.xml.pending"), 0);
    module.host.close();
    module.host.unload();
    module.host.ClearSent();
    module.host.Load();
    module.host.open();
    notices = Notices(module.host);
    ASSERT_EQ(notices.size(), 1u);
    EXPECT_EQ(notices[0].payload, Flattened(started));
    EXPECT_EQ(ReadFile(kConfigFile), started);
}
