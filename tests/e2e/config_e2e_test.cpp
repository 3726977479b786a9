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
