#include "core/ptz_controller.h"

#include <gtest/gtest.h>

#include "support/fake_protocol.h"

using namespace vorna;

TEST(TimeUntilDue, FollowsTheProtocolInterval) {
    vorna_test::FakeProtocol protocol;  // 250 ms interval
    struct Case {
        const char* what;
        int64_t lastCommandTime;
        int64_t now;
        int64_t expected;
    };
    const Case cases[] = {
        {"never commanded", kInvalidTime, 1000, 0},
        {"interval passed", 1000, 1250, 0},
        {"long ago", 0, 1000000, 0},
        {"100 ms ago", 1000, 1100, 150},
        {"just now", 1000, 1000, 250},
        {"clock set back", 2000, 1000, 0},
    };
    for (const Case& c : cases) {
        PtzCamera camera;
        camera.protocol = &protocol;
        camera.lastCommandTime = c.lastCommandTime;
        EXPECT_EQ(TimeUntilDue(camera, c.now), c.expected) << c.what;
    }
}

TEST(TimeUntilDue, ACameraWithoutProtocolWaitsTheLongestNap) {
    PtzCamera camera;
    EXPECT_EQ(TimeUntilDue(camera, 1000), kMaxWorkerWait);
}

TEST(PtzController, FindCameraMatchesAllThreeKeysAndRemoves) {
    PtzController controller;
    for (int input : {1, 2, 1}) {
        auto camera = std::make_unique<PtzCamera>();
        camera->devicesId = 7;
        camera->deviceNumber = 3;
        camera->inputNumber = input;
        controller.cameras.push_back(std::move(camera));
    }
    EXPECT_EQ(controller.FindCamera(7, 3, 1, false), controller.cameras[0].get());
    EXPECT_EQ(controller.FindCamera(7, 3, 2, false), controller.cameras[1].get());
    EXPECT_EQ(controller.FindCamera(7, 4, 1, false), nullptr);
    EXPECT_EQ(controller.FindCamera(7, 3, 1, true), nullptr);
    ASSERT_EQ(controller.cameras.size(), 2u);
    EXPECT_EQ(controller.FindCamera(7, 3, 1, false), controller.cameras[1].get());
}

TEST(PtzController, StopAxesUnlinksCamerasFromTheDestroyedProtocols) {
    PtzController controller;
    FillProtocolTable(controller.protocols);
    controller.protocols["Fake"] = std::make_unique<vorna_test::FakeProtocol>();
    auto camera = std::make_unique<PtzCamera>();
    camera->protocol = controller.protocols["Fake"].get();
    controller.cameras.push_back(std::move(camera));
    EXPECT_EQ(controller.StopAxes(), 0);
    EXPECT_TRUE(controller.protocols.empty());
    EXPECT_EQ(controller.cameras[0]->protocol, nullptr);
    EXPECT_FALSE(controller.running);
    EXPECT_EQ(controller.RunWorkerCycle(), 0);
}
