#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <random>
#include <set>
#include <thread>

#include "e2e/module_host.h"

using namespace vorna_test;

namespace {

constexpr int kTables = 4;
constexpr int kCameras = 60;
constexpr int kKills = 300;
// However slow the machine, the test stops killing after this long.
constexpr auto kLongestRun = std::chrono::seconds(30);

// Table `k`: every camera touring every k seconds, presets named after k, so
// that each table is a different file of some size.
std::string Table(int k) {
    std::string text = "<Tarn Delta=\"1\"><PTZ ID=\"1048576\"><Devices ID=\"1\"><Device Number=\"1\">";
    for (int camera = 1; camera <= kCameras; ++camera)
        text += "<Input Number=\"" + std::to_string(camera) + "\" TourDwell=\"" + std::to_string(k + 1) +
                "\"><Preset Number=\"1\" Name=\"Gate " + std::to_string(k) + "\"/><Preset Number=\"2\" Name=\"Yard " +
                std::to_string(k) + "\"/></Input>";
    return text + "</Device></Devices></PTZ></Tarn>";
}

// Starts the module in the working directory and saves the tables in turn,
// every update a change, until killed.
pid_t StartSavingChild(ModuleHost& host) {
    const pid_t child = fork();
    if (child != 0) return child;
    host.Load();
    host.open();
    for (int k = 0;; k = (k + 1) % kTables) host.Ioctl(VORNA_IOCTL_UPDATE_CONFIG, Table(k));
}

}  // namespace

// A module killed at any moment of a save leaves "VORNA.xml" as one of the
// tables it was given, whole, and the next start loads it.
TEST(CrashSave, KilledAnywhereInASaveTheFileIsOneOfTheTablesAndLoads) {
    ScopedWorkDir dir;
    ModuleHost host;
    std::set<std::string> files;
    host.Load();
    host.open();
    for (int k = 0; k < kTables; ++k) {
        host.Ioctl(VORNA_IOCTL_UPDATE_CONFIG, Table(k));
        files.insert(dir.Read("VORNA.xml"));
    }
    host.close();
    host.unload();
    ASSERT_EQ(files.size(), static_cast<size_t>(kTables));

    std::mt19937 random(20);
    std::uniform_int_distribution<int> delayMicroseconds(0, 8000);
    const auto start = std::chrono::steady_clock::now();
    int kills = 0;
    for (; kills < kKills && std::chrono::steady_clock::now() - start < kLongestRun; ++kills) {
        const pid_t child = StartSavingChild(host);
        ASSERT_GT(child, 0);
        std::this_thread::sleep_for(std::chrono::microseconds(delayMicroseconds(random)));
        kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << "kill " << kills;
        ASSERT_EQ(files.count(dir.Read("VORNA.xml")), 1u) << "kill " << kills;

        host.Load();
        host.open();
        host.close();
        host.unload();
        ASSERT_FALSE(dir.Exists("VORNA.xml.bad")) << "kill " << kills;
        ASSERT_EQ(files.count(dir.Read("VORNA.xml")), 1u) << "kill " << kills;
    }
    EXPECT_GE(kills, 100);
}
