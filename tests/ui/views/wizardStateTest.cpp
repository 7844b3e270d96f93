#include "ui/views/wizardState.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

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
    std::vector<std::string_view> labels;
    for (const wizardState state : allWizardStates) {
        labels.push_back(stepLabel(state));
    }
    EXPECT_THAT(labels,
                testing::ElementsAre("Welcome", "Connect", "Mode", "Ouptut", "Calibration", "Summary"));
}

}  // namespace
}  // namespace velmorindal
