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

// Two cameras as the file keeps them, up to the protocol list.
const std::string kTwoCameras =
    R"(<?xml ?><Tarn Delta="0"><PTZ ID="1048576" OPCODE_MAX="74"><Devices ID="1"><Device Number="1">)"
    R"(<Input Number="1" Protocol="" SerialPort="COM1" Address="3" Presets="99" TourDwell="10" TourEnabled="0" )"
    R"(TourIdle="60"><Preset Number="1" Name="Door" /></Input><Input Number="2" Protocol="" SerialPort="COM1" )"
    R"(Address="4" Presets="99" TourDwell="10" TourEnabled="0" TourIdle="60" /></Device></Devices></PTZ></Tarn>)";

std::string ReadFile(const char* name) {
    std::ifstream in(name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

}  // namespace

// A file reached through symbolic links is replaced where it lies, the links
// stay links, and the new file keeps the old one's permission bits.
TEST(ConfigE2E, SavingThroughLinksKeepsTheLinksAndThePermissions) {
    ScopedWorkDir dir;
    mkdir("site", 0700);
    std::ofstream("site/real.xml") << kTwoCameras;
    chmod("site/real.xml", 0640);
    ASSERT_EQ(symlink("real.xml", "site/current"), 0);
    ASSERT_EQ(symlink("site/current", kConfigFile), 0);
    ModuleHost host;
    host.Load();
    host.open();
    const auto notices = host.SentOfType(VORNA_TYPE_CONFIG);
    ASSERT_EQ(notices.size(), 2u);
    EXPECT_NE(notices[1].payload.find(R"(Name="Door")"), std::string::npos);
    EXPECT_EQ(Flattened(ReadFile("site/real.xml")), notices[1].payload);
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
