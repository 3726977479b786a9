#include "core/ptz_controller.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/fake_protocol.h"

using namespace vorna;

// Keys repeat here as only a table filled by hand lets them: the first
// camera with a key stays the one found whatever else goes.
TEST(PtzController, FindCameraMatchesAllThreeKeysAndRemoves) {
    PtzController controller;
    std::vector<PtzCamera*> made;
    for (int input : {1, 2, 1, 1}) {
        auto camera = std::make_unique<PtzCamera>();
        camera->devicesId = 7;
        camera->deviceNumber = 3;
        camera->inputNumber = input;
        made.push_back(&controller.cameras.Append(std::move(camera)));
    }
    EXPECT_EQ(controller.FindCamera(7, 3, 1, false), made[0]);
    EXPECT_EQ(controller.FindCamera(7, 3, 2, false), made[1]);
    EXPECT_EQ(controller.FindCamera(7, 4, 1, false), nullptr);
    EXPECT_EQ(controller.FindCamera(7, 3, 1, true), nullptr);
    EXPECT_EQ(controller.FindCamera(7, 3, 1, false), made[2]);
    controller.cameras.Erase(std::prev(controller.cameras.end()));
    EXPECT_EQ(controller.FindCamera(7, 3, 1, false), made[2]);
    controller.FindCamera(7, 3, 1, true);
    EXPECT_EQ(controller.FindCamera(7, 3, 1, false), nullptr);
    ASSERT_EQ(controller.cameras.size(), 1u);
    EXPECT_EQ(&controller.cameras.front(), made[1]);
}

TEST(PtzController, StopAxesUnlinksCamerasFromTheDestroyedProtocols) {
    PtzController controller;
    FillProtocolTable(controller.protocols);
    controller.protocols["Fake"] = std::make_unique<vorna_test::FakeProtocol>();
    auto camera = std::make_unique<PtzCamera>();
    camera->protocol = controller.protocols["Fake"].get();
    controller.cameras.Append(std::move(camera));
    EXPECT_EQ(controller.StopAxes(), 0);
    EXPECT_TRUE(controller.protocols.empty());
    EXPECT_EQ(controller.cameras.front().protocol, nullptr);
    EXPECT_FALSE(controller.running);
    EXPECT_EQ(controller.RunWorkerCycle(), 0);
}
