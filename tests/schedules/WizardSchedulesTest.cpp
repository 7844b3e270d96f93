#include <gtest/gtest.h>

#include <iostream>

#include "Exploration.h"
#include "ExploredWizard.h"
#include "TemporaryDirectory.h"

namespace velmorindal {
namespace {

Exploration explorationFrom(const ExploredWizard::Start& start, std::size_t allowed) {
    const TemporaryDirectory directory;
    return explore({.deviations = allowed}, [&](Scheduler& scheduler) {
        ExploredWizard{scheduler, directory.path(), start}.use();
    });
}

/// `fewest`: schedules that there are at least. An explorer that found nothing to choose would find no fault.
void exploreFrom(const ExploredWizard::Start& start, std::size_t allowed, std::size_t fewest) {
    const Exploration exploration = explorationFrom(start, allowed);
    std::cout << exploration.text(allowed) << std::endl;
    EXPECT_FALSE(exploration.finding.has_value());
    EXPECT_GE(exploration.schedules, fewest);
}

TEST(WizardSchedules, AnyTwoActionsFromTheCalibrationPage) {
    exploreFrom({.page = wizardState::Calibration, .actions = 2}, 2, 2'000);
}

TEST(WizardSchedules, AnyThreeActionsFromTheCalibrationPage) {
    exploreFrom({.page = wizardState::Calibration, .actions = 3, .moments = 4}, 1, 2'500);
}

TEST(WizardSchedules, CalibratingWithADeviceThatFailsOnce) {
    exploreFrom({.page = wizardState::Calibration, .actions = 2, .moments = 4, .troubles = 1}, 1, 4'000);
}

TEST(WizardSchedules, AnyFourActionsFromTheSummaryPage) {
    exploreFrom({.page = wizardState::Summary, .actions = 4}, 1, 1'500);
}

TEST(WizardSchedules, ClosingTheWindowAtAnyMomentOfAWrite) {
    exploreFrom({.page = wizardState::Summary, .actions = 1, .moments = 24}, 2, 10'000);
}

TEST(WizardSchedules, WritingToADeviceThatFailsOnce) {
    exploreFrom({.page = wizardState::Summary, .actions = 2, .moments = 8, .troubles = 1}, 1, 8'000);
}

TEST(WizardSchedules, AnyThreeActionsFromTheFirstPage) {
    exploreFrom({.page = wizardState::Welcome, .actions = 3}, 1, 700);
}

TEST(WizardSchedules, AnyTwoActionsAtAnyMomentOfAConnection) {
    exploreFrom({.page = wizardState::Welcome, .actions = 2, .moments = 12}, 1, 5'000);
}

TEST(WizardSchedules, ConnectingToADeviceThatFailsOnce) {
    exploreFrom({.page = wizardState::Welcome, .actions = 2, .moments = 4, .troubles = 1}, 1, 3'500);
}

TEST(WizardSchedules, AreTheSameOnesEveryTime) {
    const ExploredWizard::Start start{.page = wizardState::Welcome, .actions = 2, .moments = 4};

    const Exploration once = explorationFrom(start, 1);
    const Exploration again = explorationFrom(start, 1);

    EXPECT_GT(once.schedules, 1U);
    EXPECT_EQ(once.schedules, again.schedules);
    EXPECT_EQ(once.points, again.points);
    EXPECT_EQ(once.longest, again.longest);
}

}  // namespace
}  // namespace velmorindal
