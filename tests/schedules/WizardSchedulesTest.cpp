#include <gtest/gtest.h>

#include <iostream>

#include "schedules/Exploration.h"
#include "schedules/ExploredWizard.h"
#include "support/TemporaryDirectory.h"

namespace velmorindal {
namespace {

/// The sanitizers slow every schedule down, so there are fewer of them under one.
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
constexpr std::size_t deviations(std::size_t wanted) {
    return wanted - 1;
}
#else
constexpr std::size_t deviations(std::size_t wanted) {
    return wanted;
}
#endif

void exploreFrom(ExploredWizard::Start start, std::size_t wantedDeviations) {
    const TemporaryDirectory directory;
    const std::size_t allowed = deviations(wantedDeviations);
    const Exploration exploration = explore({.deviations = allowed}, [&](Scheduler& scheduler) {
        ExploredWizard{scheduler, directory.path(), start}.use();
    });
    std::cout << exploration.text(allowed) << std::endl;
    EXPECT_FALSE(exploration.finding.has_value());
}

TEST(WizardSchedules, AnyTwoActionsFromTheCalibrationPage) {
    exploreFrom({.page = wizardState::Calibration, .actions = 2}, 2);
}

TEST(WizardSchedules, AnyThreeActionsFromTheCalibrationPage) {
    exploreFrom({.page = wizardState::Calibration, .actions = 3, .moments = 4}, 1);
}

TEST(WizardSchedules, CalibratingWithADeviceThatFailsOnce) {
    exploreFrom({.page = wizardState::Calibration, .actions = 2, .moments = 4, .troubles = 1}, 1);
}

TEST(WizardSchedules, AnyFourActionsFromTheSummaryPage) {
    exploreFrom({.page = wizardState::Summary, .actions = 4}, 1);
}

TEST(WizardSchedules, ClosingTheWindowAtAnyMomentOfAWrite) {
    exploreFrom({.page = wizardState::Summary, .actions = 1, .moments = 24}, 2);
}

TEST(WizardSchedules, WritingToADeviceThatFailsOnce) {
    exploreFrom({.page = wizardState::Summary, .actions = 2, .moments = 8, .troubles = 1}, 1);
}

TEST(WizardSchedules, AnyThreeActionsFromTheFirstPage) {
    exploreFrom({.page = wizardState::Welcome, .actions = 3}, 1);
}

TEST(WizardSchedules, AnyTwoActionsAtAnyMomentOfAConnection) {
    exploreFrom({.page = wizardState::Welcome, .actions = 2, .moments = 12}, 1);
}

TEST(WizardSchedules, ConnectingToADeviceThatFailsOnce) {
    exploreFrom({.page = wizardState::Welcome, .actions = 2, .moments = 4, .troubles = 1}, 1);
}

}  // namespace
}  // namespace velmorindal
