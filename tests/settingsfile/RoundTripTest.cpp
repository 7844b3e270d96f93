#include <string>

#include "SettingsFileTest.h"

namespace velmorindal {
namespace {

using RoundTrip = SettingsFileTest;

TEST_F(RoundTrip, WhatIsSavedLoadsAgainForEveryKeyInEveryRoleAndEveryCombinationOfChoices) {
    const auto& keys = VelmorindalSwitch::keyDisplayOrder();
    // 24 combinations of choices and 29 keys have no common factor: 174 steps meet each of both many times.
    for (std::size_t step = 0; step < 174; ++step) {
        const ChosenSettings settings{.outputPath = allOutputPaths.at(step % 3),
                                      .outputMode = allOutputModes.at(step / 3 % 2),
                                      .longEnabled = step / 6 % 2 == 0,
                                      .shortEnabled = step / 12 % 2 == 0,
                                      .outputKeys = {.directKey = keys.at(step % 29),
                                                     .shortKey = keys.at((step + 7) % 29),
                                                     .longKey = keys.at((step * 3) % 29)},
                                      .clarity = static_cast<float>(step % 101) / 100.0F,
                                      .cutoff = static_cast<float>(step) / 50.0F};
        model.choose(settings);
        save(path("settings.xml"));
        model.choose(before);
        expectLoaded(path("settings.xml"), settings);
    }
}

TEST_F(RoundTrip, NumbersComeBackInHundredths) {
    for (int hundredths = 0; hundredths <= 300; hundredths += 7) {
        ChosenSettings settings = complete;
        settings.cutoff = (static_cast<float>(hundredths) + 0.2F) / 100.0F;
        model.choose(settings);
        save(path("settings.xml"));
        settings.cutoff = static_cast<float>(hundredths) / 100.0F;
        expectLoaded(path("settings.xml"), settings);
    }
}

}  // namespace
}  // namespace velmorindal
