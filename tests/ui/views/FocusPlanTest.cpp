#include "FocusPlan.h"

#include "WizardTest.h"

namespace velmorindal {
namespace {

class FocusPlanTest : public WizardTest {
  protected:
    FocusPlace arriveAt(wizardState page) {
        container.currentState = page;
        return plan.due(true);
    }

    FocusPlan plan{container};
};

TEST_F(FocusPlanTest, AfterNextItIsOnTheFirstControlOrOnTheHeadingOfAPageThatIsRead) {
    velmorindal.connectionState = ConnectionStatus::connected;
    EXPECT_EQ(arriveAt(wizardState::Welcome), FocusPlace::next);
    EXPECT_EQ(arriveAt(wizardState::Connect), FocusPlace::heading);
    EXPECT_EQ(arriveAt(wizardState::Mode), FocusPlace::firstControl);
    EXPECT_EQ(arriveAt(wizardState::Output), FocusPlace::firstControl);
    EXPECT_EQ(arriveAt(wizardState::Calibration), FocusPlace::firstControl);
    EXPECT_EQ(arriveAt(wizardState::Summary), FocusPlace::heading);
    EXPECT_EQ(plan.onArrival(), FocusPlace::heading);
}

TEST_F(FocusPlanTest, AfterBackItIsOnBackWhileThereIsOne) {
    velmorindal.connectionState = ConnectionStatus::connected;
    arriveAt(wizardState::Summary);
    for (const wizardState page :
         {wizardState::Calibration, wizardState::Output, wizardState::Mode, wizardState::Connect}) {
        EXPECT_EQ(arriveAt(page), FocusPlace::back);
    }
    EXPECT_EQ(arriveAt(wizardState::Welcome), FocusPlace::next);
}

TEST_F(FocusPlanTest, AfterBackToALostConnectionItIsOnClose) {
    velmorindal.connectionState = ConnectionStatus::error;
    arriveAt(wizardState::Mode);
    EXPECT_EQ(arriveAt(wizardState::Connect), FocusPlace::close);
}

TEST_F(FocusPlanTest, ItIsPlacedOnceForEachPage) {
    arriveAt(wizardState::Mode);
    EXPECT_EQ(plan.due(false), FocusPlace::stays);
}

TEST_F(FocusPlanTest, WhatHadItAndIsGoneHandsItOn) {
    arriveAt(wizardState::Mode);
    EXPECT_EQ(plan.due(true), FocusPlace::back);
    arriveAt(wizardState::Calibration);
    velmorindal.pollingState = PollingState::clarity;
    EXPECT_EQ(plan.due(true), FocusPlace::firstControl);
}

TEST_F(FocusPlanTest, AfterEachSaveItIsOnCloseOnce) {
    for (int save = 0; save < 2; ++save) {
        velmorindal.justSaved = false;
        arriveAt(wizardState::Calibration);
        arriveAt(wizardState::Summary);
        velmorindal.justSaved = true;
        EXPECT_EQ(plan.due(false), FocusPlace::close);
        EXPECT_EQ(plan.due(false), FocusPlace::stays);
    }
}

TEST_F(FocusPlanTest, AButtonOfAPassingStateIsNotVisited) {
    arriveAt(wizardState::Welcome);
    container.nextButtonPressed();
    plan.due(false);
    ASSERT_TRUE(container.hasBackgroundWork());
    EXPECT_EQ(plan.due(true), FocusPlace::heading);
    container.backButtonPressed();
    EXPECT_EQ(plan.due(true), FocusPlace::heading);
    finishBackground();
}

}  // namespace
}  // namespace velmorindal
