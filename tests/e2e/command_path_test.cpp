#include <gtest/gtest.h>

#include "e2e/module_host.h"

using namespace vorna_test;

namespace {

const char kSerialDocument[] =
    "<Tarn Delta=\"0\"><Serial ID=\"851968\"><Input>"
    "<Device Port=\"COM1\" Protocol=\"Pelco-D\" Use=\"2\" StreamID=\"21\"/>"
    "<Device Port=\"COM2\" Protocol=\"Panasonic\" Use=\"2\" StreamID=\"22\"/>"
    "</Input></Serial></Tarn>";

const char kCameraDocument[] =
    "<Tarn Delta=\"1\"><PTZ ID=\"1048576\"><Devices ID=\"1\"><Device Number=\"1\">"
    "<Input Number=\"1\" SerialPort=\"COM1\" Address=\"1\"/>"
    "<Input Number=\"2\" SerialPort=\"COM2\" Address=\"12\"/>"
    "</Device></Devices></PTZ></Tarn>";

std::string Event(int input, int opcode, const std::string& parm = "0", const std::string& alarm = "") {
    return "<Tarn><PTZ ID=\"1048576\"><Devices ID=\"1\"><Device Number=\"1\"><Video><Input Number=\"" +
           std::to_string(input) + "\" Opcode=\"" + std::to_string(opcode) + "\" Parm=\"" + parm + "\"" + alarm +
           "/></Video></Device></Devices></PTZ></Tarn>";
}

// A module opened in a fresh directory with a Pelco-D camera (input 1, stream
// 21) and a Panasonic camera (input 2, address 12, stream 22).
struct ConfiguredModule {
    ConfiguredModule() {
        host.Load();
        host.open();
        host.Ioctl(VORNA_IOCTL_UPDATE_CONFIG, kSerialDocument);
        host.Ioctl(VORNA_IOCTL_UPDATE_CONFIG, kCameraDocument);
        host.ClearSent();
    }
    ~ConfiguredModule() {
        host.StopWorker();
        host.close();
        host.unload();
    }
    std::vector<std::string> Serial(uint64_t stream) {
        std::vector<std::string> payloads;
        for (auto& m : host.SentOfType(VORNA_TYPE_SERIAL))
            if (m.record.stream == stream) payloads.push_back(m.payload);
        return payloads;
    }
    ScopedWorkDir dir;
    ModuleHost host;
};


}  // namespace

TEST(CommandPath, WriteAcceptsOnlyEventTypesWithBothFlagBits) {
    struct Row {
        uint64_t type;
        uint64_t flags;
        bool accepted;
    };
    const Row rows[] = {
        {8, 0x1000010, true}, {8, 0x3000010, true}, {12, 0x1000010, false},
        {0, 0x1000010, false}, {8, 0x1000000, false}, {16, 0x1000010, false},
    };
    for (const Row& row : rows) {
        ConfiguredModule module;
        module.host.Event(row.type, row.flags, Event(1, 33));
        EXPECT_EQ(module.Serial(21).size(), row.accepted ? 1u : 0u) << row.type << " " << row.flags;
    }
}
