#include "WelcomePanelView.h"

#include <gtest/gtest.h>

namespace velmorindal {
namespace {

TEST(WelcomePanelView, SaysHowToPutTheDeviceIntoConfigurationMode) {
    EXPECT_EQ(WelcomePanelView::title, "Welcome to the Velmorindal Setup Wizard!");
    EXPECT_EQ(
        WelcomePanelView::body,
        "This program will walk you through the steps of setting up your Velmorindal. You can select your "
        "input options, output options, and calibration settings.\n\nTo begin, plug the USB dongle into your "
        "computer. "
        "Next, ensure that your Velmorindal is turned off. Put the Velmorindal in Configuration mode by "
        "holding down the Pairing button before pressing the Power button to turn it on.\n\nOnce you see the "
        "Velmorindal flash white, it will be in Configuration mode. Click Next to continue.");
}

TEST(WelcomePanelView, FramesTheLogoInARedCircleWithAFaintWhiteShadow) {
    EXPECT_EQ(WelcomePanelView::logo.resourceName, "Logo");
    EXPECT_EQ(WelcomePanelView::logo.padding, 20);
    EXPECT_EQ(WelcomePanelView::logo.outlineColor, colors::red);
    EXPECT_EQ(WelcomePanelView::logo.outlineWidth, 4);
    EXPECT_EQ(WelcomePanelView::logo.shadowColor, colors::white);
    EXPECT_DOUBLE_EQ(WelcomePanelView::logo.shadowOpacity, 0.33);
}

}  // namespace
}  // namespace velmorindal
