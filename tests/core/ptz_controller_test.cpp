#include "core/ptz_controller.h"

#include <gtest/gtest.h>

#include "support/fake_protocol.h"

using namespace vorna;

TEST(PtzController, FindCameraMatchesAllThreeKeysAndRemoves) {
    PtzController controller;
    for (int input : {1, 2, 1}) {
        auto camera = std::make_unique<PtzCamera>();
        camera->devicesId = 7;
        camera->deviceNumber = 3;
        camera->inputNumber = input;
        controller.cameras.Append(std::move(camera));
    }
    EXPECT_EQ(controller.FindCamera(7, 3, 1, false), &controller.cameras.front());
    EXPECT_EQ(controller.FindCamera(7, 3, 2, false), std::next(controller.cameras.begin())->get());
    EXPECT_EQ(controller.FindCamera(7, 4, 1, false), nullptr);
    EXPECT_EQ(controller.FindCamera(7, 3, 1, true), nullptr);
    ASSERT_EQ(controller.cameras.size(), 2u);
    EXPECT_EQ(controller.FindCamera(7, 3, 1, false), &controller.cameras.back());
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
