// The control panel's API against vorna-host on virtual lines: refusals say
// why and change nothing; accepted calls reach the cameras.
#include <gtest/gtest.h>
#include <httplib.h>

#include <nlohmann/json.hpp>

#include "support/temp_dir.h"
#include "tools/host_process.h"

using namespace vorna_test;

namespace {

const char* const kToken = "s3cret-token";

// A Pelco-D camera with two named presets in a tour, and an AD-RS422 camera.
const char* const kCameras =
    "<Tarn Delta=\"1\"><PTZ ID=\"1048576\"><Devices ID=\"1\"><Device Number=\"1\">"
    "<Input Number=\"1\" SerialPort=\"COM1\" Address=\"1\" TourDwell=\"5\" TourEnabled=\"0\" TourIdle=\"60\">"
    "<Preset Number=\"1\" Name=\"Gate &amp; yard\"><Tour Position=\"1\" /></Preset>"
    "<Preset Number=\"2\" Name=\"Dock\"><Tour Position=\"2\" /></Preset></Input>"
    "<Input Number=\"2\" SerialPort=\"COM2\" Address=\"1\" /></Device></Devices></PTZ></Tarn>";

class PanelApiTest : public ::testing::Test {
protected:
    PanelApiTest()
        : host({"--line", "COM1=Pelco-D", "--line", "COM2=AD-RS422", "--http", "127.0.0.1:0", "--http-token", kToken},
               (dir.Write("VORNA.xml", kCameras), dir.path)),
          port(WaitForPanelPort(host)),
          client("127.0.0.1", port) {
        client.set_bearer_token_auth(kToken);
    }

    httplib::Result Post(const std::string& path, const std::string& body) {
        return client.Post(path.c_str(), body, "application/json");
    }

    TempDir dir;
    HostProcess host;
    int port;
    httplib::Client client;
};

TEST_F(PanelApiTest, RefusedCallsSayWhyAndChangeNothing) {
    const std::string savedTable = dir.Read("VORNA.xml");
    const struct {
        const char* token;  // null: the test's own
        const char* path;
        std::string body;
        int status;
        const char* reason;
    } rows[] = {
        {"", "/api/cameras/1/1/1/move", "{\"pan\":1}", 401, "this panel needs its token"},
        {"s3cret-tokem", "/api/cameras/1/1/1/move", "{\"pan\":1}", 403, "wrong token"},
        {nullptr, "/api/cameras/1/1/1/command", "{\"command\":", 400, "the body is not JSON"},
        {nullptr, "/api/cameras/1/1/1/command", "[\"left\"]", 400, "the body must be a JSON object"},
        {nullptr, "/api/cameras/1/1/1/command", "{\"cmd\":\"left\"}", 400, "expected {\"command\": TEXT}"},
        {nullptr, "/api/cameras/1/1/1/command", "{\"command\":\"quit\"}", 400, "is not a command for a camera"},
        {nullptr, "/api/cameras/1/1/1/command", "{\"command\":\"speed pan 64\"}", 422, "speed pan must be 0 to 63"},
        {nullptr, "/api/cameras/1/1/2/command", "{\"command\":\"preset clear 3\"}", 409, "cannot clear a preset"},
        {nullptr, "/api/cameras/1/1/1/move", "{\"pan\":2}", 400, "\"pan\" must be an integer from -1 to 1"},
        {nullptr, "/api/cameras/1/1/1/tour", "{}", 400, "expected \"enabled\""},
        {nullptr, "/api/cameras/1/1/1/tour", "{\"dwell\":0}", 400, "\"dwell\" must be an integer from 1"},
        {nullptr, "/api/cameras/1/1/1/tour", "{\"enabled\":1}", 400, "\"enabled\" must be true or false"},
        {nullptr, "/api/cameras/9/9/9/move", "{}", 404, "no camera 9 9 9"},
        {nullptr, "/api/cameras/x/1/1/move", "{}", 400, "a camera is three integers"},
        {nullptr, "/api/cameras/1/1/1/dance", "{}", 404, "no action 'dance'"},
        {nullptr, "/api/nothing", "{}", 404, "no such page or API call"},
        {nullptr, "/api/cameras/1/1/1/command", std::string(5000, ' '), 413, "request too large"},
    };
    for (const auto& row : rows) {
        httplib::Client other("127.0.0.1", port);
        if (row.token && *row.token) other.set_bearer_token_auth(row.token);
        httplib::Client& sender = row.token ? other : client;
        const httplib::Result result = sender.Post(row.path, row.body, "application/json");
        ASSERT_TRUE(result) << row.path;
        EXPECT_EQ(row.status, result->status) << row.path << " " << row.body.substr(0, 40);
        const nlohmann::json answer = nlohmann::json::parse(result->body, nullptr, false);
        EXPECT_NE(std::string::npos, answer.value("error", "").find(row.reason)) << row.path << ": " << result->body;
    }
    EXPECT_EQ(401, httplib::Client("127.0.0.1", port).Get("/")->status);
    EXPECT_EQ(403, client.Get("/?token=s3cret-tokem", {{"Authorization", ""}})->status);

    host.Signal(SIGTERM);
    EXPECT_EQ(0, host.Finish()) << host.err;
    EXPECT_EQ(std::string::npos, host.out.find("COM")) << host.out;
    EXPECT_EQ(savedTable, dir.Read("VORNA.xml"));
}

TEST_F(PanelApiTest, APortInUseEndsTheStartBeforeTheModuleOpens) {
    const std::string address = "127.0.0.1:" + std::to_string(port);
    HostProcess second({"--line", "COM1=Pelco-D", "--http", address}, dir.path);
    EXPECT_EQ(1, second.Finish());
    EXPECT_EQ("vorna-host: --http: cannot listen on " + address + ": Address already in use\n", second.err);
}

TEST_F(PanelApiTest, CallsDriveTheCamerasAndKeepTheirTable) {
    EXPECT_EQ("{\"sent\":2}", Post("/api/cameras/1/1/1/move", "{\"pan\":-1,\"tilt\":1}")->body);
    const char* const moved = "= address 1: pan left 32, tilt up 32";
    EXPECT_TRUE(host.WaitUntil([&] { return host.out.find(moved) != std::string::npos; })) << host.out;
    EXPECT_EQ("{\"held\":true}", Post("/api/cameras/1/1/1/hold", "")->body);
    EXPECT_EQ("{\"sent\":2}", Post("/api/cameras/1/1/1/move", "{}")->body);
    EXPECT_EQ(200, Post("/api/cameras/1/1/2/command", "{\"command\":\"preset clear 3\",\"confirmed\":true}")->status);
    EXPECT_EQ(200, Post("/api/cameras/1/1/1/command", "{\"command\":\"alarm start 4 60 2\"}")->status);
    EXPECT_EQ(200, Post("/api/cameras/1/1/1/tour", "{\"dwell\":12,\"enabled\":true}")->status);

    // A new dwell keeps the camera's presets and tour.
    const std::string cameras = client.Get("/api/cameras")->body;
    EXPECT_NE(std::string::npos, cameras.find("\"tour\":{\"dwell\":12,\"enabled\":true}")) << cameras;
    EXPECT_NE(std::string::npos, cameras.find("{\"name\":\"Gate & yard\",\"number\":1}")) << cameras;
    EXPECT_NE(std::string::npos, dir.Read("VORNA.xml").find("<Tour Position=\"2\" />"));
    EXPECT_NE(std::string::npos, client.Get("/api/lines")->body.find("{\"line\":\"COM1\""));
}

}  // namespace
