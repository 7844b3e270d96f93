#pragma once

#include <string_view>

#include "Color.h"

namespace velmorindal {

/// The first page: how to put the device into configuration mode. It has no controls and no state.
class WelcomePanelView {
  public:
    /// The logo, clipped to a circle. Lengths in device-independent pixels.
    struct Logo {
        std::string_view resourceName;
        int padding;
        Color outlineColor;
        int outlineWidth;
        Color shadowColor;
        double shadowOpacity;
    };

    static constexpr Logo logo{.resourceName = "Logo",
                               .padding = 20,
                               .outlineColor = colors::red,
                               .outlineWidth = 4,
                               .shadowColor = colors::white,
                               .shadowOpacity = 0.33};

    /// In the larger font.
    static constexpr std::string_view title = "Welcome to the Velmorindal Setup Wizard!";

    static constexpr std::string_view body =
        "This program will walk you through the steps of setting up your Velmorindal. You can select your "
        "input options, output options, and calibration settings.\n\n"
        "To begin, plug the USB dongle into your computer. Next, ensure that your Velmorindal is turned off. "
        "Put the Velmorindal in Configuration mode by holding down the Pairing button before pressing the "
        "Power button to turn it on.\n\n"
        "Once you see the Velmorindal flash white, it will be in Configuration mode. Click Next to continue.";
};

}  // namespace velmorindal
