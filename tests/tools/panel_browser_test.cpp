// The control panel in a real browser: headless Chromium at phone size drives
// the page against vorna-host on a virtual line, and the frames are read from
// what the host prints.
#include <gtest/gtest.h>

#include <fstream>

#include "support/temp_dir.h"
#include "tools/host_process.h"
#include "tools/webdriver.h"

using namespace vorna_test;

namespace {

const char* const kToken = "phone-token";
const char* const kCameras =
    "<Tarn Delta=\"1\"><PTZ ID=\"1048576\"><Devices ID=\"1\"><Device Number=\"1\">"
    "<Input Number=\"1\" SerialPort=\"COM1\" Address=\"1\" TourDwell=\"10\" TourEnabled=\"0\" TourIdle=\"60\">"
    "<Preset Number=\"1\" Name=\"Gate\" /><Preset Number=\"2\" Name=\"Yard\" /></Input>"
    "</Device></Devices></PTZ></Tarn>";
const char* const kStop = "address 1: stop pan, tilt and zoom";
const char* const kWatchdogStop = "panel: camera 1 1 1 stopped, its page sent nothing for a second";
constexpr int kPadReach = 100;  // pixels from the pad's middle, well past its dead zone

// Waits until `text` shows in what the host printed after `from`; its
// position, or npos.
size_t WaitForFrame(HostProcess& host, const std::string& text, size_t from) {
    host.WaitUntil([&] { return host.out.find(text, from) != std::string::npos; });
    return host.out.find(text, from);
}

TEST(PanelInBrowser, PadMovesWhileHeldPresetGoesOutAndALostPageStopsTheCamera) {
    if (access(WebDriver::kChromium, X_OK) != 0 || access(WebDriver::kChromedriver, X_OK) != 0)
        GTEST_SKIP() << "chromium or chromedriver is not installed (scripts/install-deps installs both): "
                        "the control panel's browser test did not run";
    TempDir dir;
    dir.Write("VORNA.xml", kCameras);
    HostProcess host({"--line", "COM1=Pelco-D", "--http", "127.0.0.1:0", "--http-token", kToken}, dir.path);
    const int port = WaitForPanelPort(host);
    ASSERT_GT(port, 0) << host.err;

    WebDriver browser(dir.File("profile"), 390, 844);
    browser.Open("http://127.0.0.1:" + std::to_string(port) + "/?token=" + kToken);
    ASSERT_TRUE(Eventually([&] {
        return browser.Script("return document.querySelectorAll('#presets button').length === 2 && "
                              "document.getElementById('link').textContent === 'online'") == true;
    }));
    const WebDriver::Json pad = browser.Element("#pad");

    // Held: the pan goes out and the page keeps it going past the host's
    // one-second watchdog; released: the stop follows.
    browser.Press(pad, -kPadReach, 0);
    const size_t panLeft = WaitForFrame(host, "address 1: pan left 32, tilt still, zoom still", 0);
    ASSERT_NE(std::string::npos, panLeft) << host.out << host.err;
    EXPECT_FALSE(host.WaitUntil([&] { return host.err.find(kWatchdogStop) != std::string::npos; }, 1500));
    EXPECT_EQ(std::string::npos, host.out.find(kStop, panLeft)) << host.out;
    browser.Release();
    const size_t released = WaitForFrame(host, kStop, panLeft);
    ASSERT_NE(std::string::npos, released) << host.out;

    browser.Script("document.querySelector('#presets button:nth-child(2)').click()");
    const size_t preset = WaitForFrame(host, "address 1: go to preset 2", released);
    ASSERT_NE(std::string::npos, preset) << host.out;
    EXPECT_TRUE(Eventually([&] {
        const WebDriver::Json latest = browser.Script("return document.querySelector('#recent li').textContent");
        return latest == "COM1address 1: go to preset 2";
    }));
    std::ofstream(VORNA_PANEL_SCREENSHOT, std::ios::binary) << browser.Screenshot();

    // The phone goes away mid-pan: nothing more comes from the page, and the
    // host stops the camera.
    browser.Press(pad, kPadReach, 0);
    const size_t panRight = WaitForFrame(host, "address 1: pan right 32, tilt still, zoom still", preset);
    ASSERT_NE(std::string::npos, panRight) << host.out;
    browser.Kill();
    EXPECT_TRUE(host.WaitUntil([&] { return host.err.find(kWatchdogStop) != std::string::npos; })) << host.err;
    EXPECT_NE(std::string::npos, WaitForFrame(host, kStop, panRight)) << host.out;

    host.Signal(SIGTERM);
    EXPECT_EQ(0, host.Finish()) << host.err;
}

}  // namespace
