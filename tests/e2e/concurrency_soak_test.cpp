#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <random>
#include <thread>
#include <vector>

#include "e2e/module_host.h"

using namespace vorna_test;

namespace {

constexpr int kRounds = 25;
constexpr auto kLongestClose = std::chrono::milliseconds(300);

const char kSerialDocument[] =
    "<Tarn Delta=\"0\"><Serial ID=\"851968\"><Input>"
    "<Device Port=\"COM1\" Protocol=\"Pelco-D\" Use=\"2\" StreamID=\"21\"/>"
    "<Device Port=\"COM2\" Protocol=\"AD-M3200 Multi\" Use=\"2\" StreamID=\"22\"/>"
    "</Input></Serial></Tarn>";

std::string Cameras(int tourDwell) {
    return "<Tarn Delta=\"1\"><PTZ ID=\"1048576\"><Devices ID=\"1\"><Device Number=\"1\">"
           "<Input Number=\"1\" SerialPort=\"COM1\" Address=\"1\" TourDwell=\"" +
           std::to_string(tourDwell) +
           "\" TourEnabled=\"1\" TourIdle=\"1\"><Preset Number=\"1\" Name=\"A\"><Tour Position=\"1\"/></Preset>"
           "<Preset Number=\"2\" Name=\"B\"><Tour Position=\"2\"/></Preset></Input>"
           "<Input Number=\"2\" SerialPort=\"COM2\" Address=\"3\"/></Device></Devices></PTZ></Tarn>";
}

std::string Event(int input, int opcode, const std::string& alarm = "") {
    return "<Tarn><PTZ ID=\"1048576\"><Devices ID=\"1\"><Device Number=\"1\"><Video><Input Number=\"" +
           std::to_string(input) + "\" Opcode=\"" + std::to_string(opcode) + "\" Parm=\"1\"" + alarm +
           "/></Video></Device></Devices></PTZ></Tarn>";
}

// One host thread: commands of both forms, or configuration updates, until
// told to stop.
void Call(ModuleHost& host, int role, const std::atomic<bool>& stop) {
    for (int i = 0; !stop; ++i) {
        switch (role) {
            case 0: host.Event(VORNA_TYPE_EVENT, VORNA_FLAGS_EVENT, Event(1 + i % 2, i % 3 ? 34 : 32)); break;
            case 1:
                host.Event(VORNA_TYPE_ALARM_EVENT, VORNA_FLAGS_EVENT,
                           Event(2 - i % 2, 60, " Time=\"0\" Milliseconds=\"0\" Action=\"1\" Alarm=\"" +
                                                    std::to_string(i % 2) + "\""));
                break;
            default: host.Ioctl(VORNA_IOCTL_UPDATE_CONFIG, Cameras(1 + i % 3)); break;
        }
    }
}

}  // namespace

// Host threads call Write (both forms) and IOCTL op 2 while the worker runs,
// and Close comes at a random moment: it always returns promptly, the worker
// call ends, and (under ThreadSanitizer) nothing races.
TEST(Concurrency, CloseAtRandomMomentsWhileHostThreadsCall) {
    ScopedWorkDir dir;
    ModuleHost host;
    std::mt19937 random(6);
    std::uniform_int_distribution<int> runMicroseconds(0, 20000);
    for (int round = 0; round < kRounds; ++round) {
        host.Load();
        host.open();
        host.Ioctl(VORNA_IOCTL_UPDATE_CONFIG, kSerialDocument);
        host.Ioctl(VORNA_IOCTL_UPDATE_CONFIG, Cameras(1));
        std::atomic<bool> stop{false};
        std::thread worker([&] { host.Ioctl(VORNA_IOCTL_RUN_WORKER); });
        std::vector<std::thread> callers;
        for (int role = 0; role < 3; ++role) callers.emplace_back([&, role] { Call(host, role, stop); });
        std::this_thread::sleep_for(std::chrono::microseconds(runMicroseconds(random)));
        const auto closing = std::chrono::steady_clock::now();
        host.close();
        const auto closed = std::chrono::steady_clock::now();
        worker.join();
        stop = true;
        for (auto& caller : callers) caller.join();
        host.unload();
        EXPECT_LT(closed - closing, kLongestClose) << "round " << round;
    }
}
