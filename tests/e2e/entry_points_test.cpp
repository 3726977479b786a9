#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <set>
#include <thread>
#include <tuple>

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

bool AllBytesAre(const void* data, size_t from, size_t to, uint8_t value) {
    auto bytes = static_cast<const uint8_t*>(data);
    for (size_t i = from; i < to; ++i)
        if (bytes[i] != value) return false;
    return true;
}

size_t SerialFrames(ModuleHost& host) {
    const auto sent = host.Sent();
    return std::count_if(sent.begin(), sent.end(), [](const SentMessage& m) { return m.record.type == VORNA_TYPE_SERIAL; });
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
    EXPECT_TRUE(AllBytesAre(&r, 0, 8, 0xAB));
    EXPECT_TRUE(AllBytesAre(&r, 16, 32, 0xAB));
    EXPECT_TRUE(AllBytesAre(&r, 48, 96, 0xAB));
    EXPECT_TRUE(AllBytesAre(&r, 97, 99, 0xAB));
    EXPECT_TRUE(AllBytesAre(&r, 100, sizeof r, 0xAB));
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

TEST(EntryPoints, UnknownIoctlOpAndBadRecordsDoNothing) {
    ScopedWorkDir dir;
    ModuleHost host;
    host.Load();
    host.open();
    const size_t sentAtOpen = host.Sent().size();
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
    EXPECT_EQ(host.Sent().size(), sentAtOpen);
    host.close();
    host.unload();
}

// Write takes types 4 and 8 only, and only with both flag bits of 0x1000010:
// an accepted pan command reaches the Pelco-D camera's line.
TEST(EntryPoints, WriteAcceptsOnlyEventTypesWithBothFlagBits) {
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
        const size_t before = SerialFrames(host);
        host.Event(type, flags, "<Tarn><PTZ ID=\"1048576\"><Devices ID=\"1\"><Device Number=\"1\"><Video><Input "
                                "Number=\"1\" Opcode=\"33\" Parm=\"0\"/></Video></Device></Devices></PTZ></Tarn>");
        EXPECT_EQ(SerialFrames(host) - before, frames) << type << " " << flags;
    }
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
