#include "wizardState.h"

#include <gtest/gtest.h>

namespace velmorindal {
namespace {

TEST(WizardState, ThePagesFollowEachOtherInTheWizardsOrder) {
    EXPECT_EQ(static_cast<int>(wizardState::Welcome), 0);
    EXPECT_EQ(static_cast<int>(wizardState::Connect), 1);
    EXPECT_EQ(static_cast<int>(wizardState::Mode), 2);
    EXPECT_EQ(static_cast<int>(wizardState::Output), 3);
    EXPECT_EQ(static_cast<int>(wizardState::Calibration), 4);
    EXPECT_EQ(static_cast<int>(wizardState::Summary), 5);
}

TEST(WizardState, EveryPageHasItsStepLabelWithOutputMisspelledOnPurpose) {
    EXPECT_EQ(stepLabel(wizardState::Welcome), "Welcome");
    EXPECT_EQ(stepLabel(wizardState::Connect), "Connect");
    EXPECT_EQ(stepLabel(wizardState::Mode), "Mode");
    EXPECT_EQ(stepLabel(wizardState::Output), "Ouptut");
    EXPECT_EQ(stepLabel(wizardState::Calibration), "Calibration");
    EXPECT_EQ(stepLabel(wizardState::Summary), "Summary");
}

}  // namespace
}  // namespace velmorindal
