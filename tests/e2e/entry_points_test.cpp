#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <set>
#include <thread>
#include <tuple>
#include <utility>

#include "e2e/module_host.h"

using namespace vorna_test;

namespace {

std::set<std::string> ExportedSymbols() {
    const std::string command = std::string(VORNA_NM) + " -D --defined-only -j " + VORNA_LIBRARY_PATH;
    FILE* pipe = popen(command.c_str(), "r");
    std::set<std::string> names;
    char line[512];
    while (pipe && fgets(line, sizeof line, pipe)) names.insert(std::string(line, std::strcspn(line, "\n")));
    if (pipe) pclose(pipe);
    return names;
}

}  // namespace

TEST(EntryPoints, ExportsExactlyTheSixEntryPoints) {
    EXPECT_EQ(ExportedSymbols(), (std::set<std::string>{"Close", "IOCTL", "Load", "Open", "Unload", "Write"}));
}

TEST(EntryPoints, LoadWritesOnlyTheFiveRegistrationFields) {
    ModuleHost host;
    host.Load();
    const ModuleRegistration& r = host.registration;
    EXPECT_EQ(r.moduleId, 0x100000u);
    EXPECT_EQ(r.firstMask, 0x2000010u);
    EXPECT_EQ(r.secondMask, 0x2000010u);
    EXPECT_EQ(r.firstFlag, 1);
    EXPECT_EQ(r.secondFlag, 1);
    const auto* bytes = reinterpret_cast<const uint8_t*>(&r);
    const std::pair<size_t, size_t> untouched[] = {{0, 8}, {16, 32}, {48, 96}, {97, 99}, {100, sizeof r}};
    for (const auto& [from, to] : untouched)
        EXPECT_TRUE(std::all_of(bytes + from, bytes + to, [](uint8_t b) { return b == 0xAB; })) << "from " << from;
    host.unload();
}

TEST(EntryPoints, CallsWithoutControllerAreHarmless) {
    ModuleHost host;
    EXPECT_EQ(host.unload(), 0);
    EXPECT_EQ(host.open(), 0);
    EXPECT_EQ(host.Event(8, 0x1000010, "<Tarn/>"), 0);
    EXPECT_EQ(host.Ioctl(VORNA_IOCTL_RUN_WORKER), 0);
    EXPECT_EQ(host.Ioctl(VORNA_IOCTL_UPDATE_CONFIG, "<Tarn Delta=\"1\"/>"), 0);
    EXPECT_EQ(host.close(), 0);
    EXPECT_EQ(host.write(nullptr), 0);
    EXPECT_EQ(host.ioctl(nullptr), 0);
    EXPECT_EQ(host.load(nullptr, nullptr), 0);
    EXPECT_TRUE(host.Sent().empty());
    host.Load();
    EXPECT_EQ(host.unload(), 0);
    EXPECT_EQ(host.unload(), 0);
}

// Write takes types 4 and 8 only, and only with both flag bits of 0x1000010:
// an accepted pan command reaches the Pelco-D camera's line. An unknown IOCTL
// op and records without data do nothing.
TEST(EntryPoints, WriteAndIoctlTakeOnlyWhatTheyKnow) {
    ScopedWorkDir dir;
    ModuleHost host;
    host.Load();
    host.open();
    host.Ioctl(VORNA_IOCTL_UPDATE_CONFIG, "<Tarn Delta=\"0\"><Serial ID=\"851968\"><Input><Device Port=\"COM1\" "
                                          "Protocol=\"Pelco-D\" Use=\"2\" StreamID=\"21\"/></Input></Serial></Tarn>");
    host.Ioctl(VORNA_IOCTL_UPDATE_CONFIG, "<Tarn Delta=\"1\"><PTZ ID=\"1048576\"><Devices ID=\"1\"><Device Number=\"1\">"
                                          "<Input Number=\"1\" SerialPort=\"COM1\" Address=\"1\"/></Device></Devices></PTZ></Tarn>");
    const std::tuple<uint64_t, uint64_t, size_t> rows[] = {
        {8, 0x1000010, 1}, {8, 0x3000010, 1}, {12, 0x1000010, 0}, {0, 0x1000010, 0}, {8, 0x1000000, 0},
        {16, 0x1000010, 0},
    };
    for (const auto& [type, flags, frames] : rows) {
        const size_t before = host.Sent().size();
        host.Event(type, flags, "<Tarn><PTZ ID=\"1048576\"><Devices ID=\"1\"><Device Number=\"1\"><Video><Input "
                                "Number=\"1\" Opcode=\"33\" Parm=\"0\"/></Video></Device></Devices></PTZ></Tarn>");
        EXPECT_EQ(host.Sent().size() - before, frames) << type << " " << flags;
    }
    const size_t before = host.Sent().size();
    EXPECT_EQ(host.Ioctl(3, "<Tarn Delta=\"1\"/>"), 0);
    IoctlRequest request{};
    request.op = VORNA_IOCTL_UPDATE_CONFIG;
    request.length = 10;
    EXPECT_EQ(host.ioctl(&request), 0);
    HostEvent event{};
    event.type = 8;
    event.flags = 0x1000010;
    event.length = 5;
    EXPECT_EQ(host.write(&event), 0);
    event.data = "<Tarn/>";
    event.length = -1;
    EXPECT_EQ(host.write(&event), 0);
    EXPECT_EQ(host.Sent().size(), before);
    host.close();
    host.unload();
}

TEST(EntryPoints, WorkerNapsBeforeOpenAndCloseWaitsForIt) {
    ModuleHost host;
    host.Load();
    int result = -1;
    std::thread worker([&] { result = host.Ioctl(VORNA_IOCTL_RUN_WORKER); });
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    EXPECT_TRUE(host.Sent().empty());
    host.close();
    worker.join();
    EXPECT_EQ(result, 0);
    host.unload();
}

TEST(EntryPoints, CloseWithoutWorkerReturnsAtOnceAndALateWorkerEndsAtOnce) {
    ScopedWorkDir dir;
    ModuleHost host;
    host.Load();
    host.open();
    auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(host.close(), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(5));
    EXPECT_EQ(host.Ioctl(VORNA_IOCTL_RUN_WORKER), 0);
    host.unload();
}
