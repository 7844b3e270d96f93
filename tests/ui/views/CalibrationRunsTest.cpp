#include <functional>
#include <initializer_list>

#include "Announcements.h"
#include "InProcessDongle.h"
#include "WizardTest.h"

namespace velmorindal {
namespace {

using testing::ElementsAre;

/// The Calibration page beside a device that streams reports without a pause.
class CalibrationRunsTest : public WizardTest {
  protected:
    void SetUp() override { ASSERT_TRUE(connect()); }

    void TearDown() override {
        velmorindal.pollingState = PollingState::none;
        dongle.unplug();
        WizardTest::TearDown();
    }

    bool runsOn(PollingState measurement) {
        return dispatch.runMainWorkUntil([&] { return velmorindal.pollingState.get() == measurement; });
    }

    /// The order to stop has been sent when a run has ended, but a report on its way looks like its
    /// acknowledgement: the device may get to it a moment later.
    bool deviceStopsReporting() {
        return dispatch.runMainWorkUntil([&] { return dongle.state().autoTuneChannel == 0; });
    }

    template <typename Action>
    static std::vector<std::string> pollingLines(Action action) {
        return linesStarting("Setting polling state", linesPrintedBy(action));
    }

    InProcessDongle dongle{system, directory.path(), {.reportInterval = std::chrono::milliseconds{5}}};
    CalibrationPanelView& page = container.calibrationPanel;
};

TEST_F(CalibrationRunsTest, PressingAShowButtonTwiceStartsAndThenStopsItsRun) {
    for (const PollingState measurement : {PollingState::clarity, PollingState::duration}) {
        const bool clarity = measurement == PollingState::clarity;
        const std::string name{caseName(measurement)};
        const auto press = [&] { clarity ? page.showClarityPressed() : page.showDurationPressed(); };
        EXPECT_THAT(pollingLines(press), ElementsAre("Setting polling state from  none " + name));
        ASSERT_TRUE(runsOn(measurement));
        EXPECT_EQ(dongle.state().autoTuneChannel, clarity ? 2 : 0);

        EXPECT_THAT(pollingLines(press), ElementsAre("Setting polling state from  " + name + " none"));

        EXPECT_EQ(velmorindal.pollingState.get(), PollingState::none);
        EXPECT_FALSE(velmorindal.bgIsProcessing);
        EXPECT_TRUE(deviceStopsReporting());
    }
}

TEST_F(CalibrationRunsTest, EveryPressThatStopsARunIsLoggedBeforeItsEndIsWaitedFor) {
    for (const auto& press : std::initializer_list<std::function<void()>>{
             [&] { page.showClarityPressed(); },
             [&] { page.showDurationPressed(); },
             [&] { container.closeButtonPressed(); },
         }) {
        page.showClarityPressed();
        ASSERT_TRUE(runsOn(PollingState::clarity));
        std::vector<std::string_view> statesWhenLogged;
        {
            const PrintDiversion log{[&](std::string_view line) {
                if (line.starts_with("Setting polling state")) {
                    statesWhenLogged.push_back(caseName(velmorindal.pollingState.get()));
                }
            }};
            press();
        }
        EXPECT_THAT(statesWhenLogged, ElementsAre("clarity"));
        page.stop();
    }
}

TEST_F(CalibrationRunsTest, ARunOfTheOtherKindIsStoppedBeforeTheNewOneStarts) {
    page.showClarityPressed();
    ASSERT_TRUE(runsOn(PollingState::clarity));

    EXPECT_THAT(pollingLines([&] { page.showDurationPressed(); }),
                ElementsAre("Setting polling state from  clarity duration"));

    EXPECT_TRUE(deviceStopsReporting());
    EXPECT_TRUE(runsOn(PollingState::duration));
}

TEST_F(CalibrationRunsTest, ASecondPressWhileTheRunIsOnlyStartingStopsIt) {
    page.showClarityPressed();
    // It waits for the main queue to announce itself; the main thread is about to wait for its end.
    ASSERT_TRUE(dispatch.waitForPendingMainWork(1));
    ASSERT_EQ(velmorindal.pollingState.get(), PollingState::none);

    EXPECT_THAT(pollingLines([&] { page.showClarityPressed(); }),
                ElementsAre("Setting polling state from  none none"));

    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::none);
    EXPECT_FALSE(velmorindal.bgIsProcessing);
    EXPECT_TRUE(deviceStopsReporting());
}

TEST_F(CalibrationRunsTest, TheOtherButtonReplacesARunThatIsOnlyStarting) {
    page.showClarityPressed();
    ASSERT_TRUE(dispatch.waitForPendingMainWork(1));

    EXPECT_THAT(pollingLines([&] { page.showDurationPressed(); }),
                ElementsAre("Setting polling state from  none duration"));

    EXPECT_TRUE(deviceStopsReporting());
    EXPECT_TRUE(runsOn(PollingState::duration));
    page.showDurationPressed();
    EXPECT_FALSE(velmorindal.bgIsProcessing);
}

TEST_F(CalibrationRunsTest, ADisplayThatDidNotStartIsReportedBesideItsButtonUntilTheNextPress) {
    for (const PollingState measurement : {PollingState::clarity, PollingState::duration}) {
        const bool clarity = measurement == PollingState::clarity;
        const auto press = [this, clarity] {
            clarity ? page.showClarityPressed() : page.showDurationPressed();
        };
        if (clarity) {
            dongle.onNext(VelmorindalMessageType::autoTune, Fault::errorFrame());
        } else {
            dongle.onNext(VelmorindalMessageType::lastHumDuration, Fault::silence());
        }
        press();
        EXPECT_EQ(page.trouble(), "");
        ASSERT_TRUE(dispatch.runMainWorkUntil([&] { return !velmorindal.bgIsProcessing; }));
        EXPECT_EQ(page.troubleWith(measurement), CalibrationPanelView::couldNotStartText);
        EXPECT_EQ(page.troubleWith(clarity ? PollingState::duration : PollingState::clarity), "");
        EXPECT_EQ(page.untilNextLook(), std::nullopt);

        press();
        EXPECT_EQ(page.trouble(), "");
        ASSERT_TRUE(runsOn(measurement));
        press();
        EXPECT_EQ(page.trouble(), "");
    }
}

TEST_F(CalibrationRunsTest, ADisplayThatDidNotStartIsForgottenWhenThePageIsLeft) {
    container.currentState = wizardState::Calibration;
    dongle.onNext(VelmorindalMessageType::autoTune, Fault::errorFrame());
    page.showClarityPressed();
    finishBackground();
    ASSERT_NE(page.trouble(), "");
    container.backButtonPressed();
    EXPECT_EQ(page.trouble(), "");

    container.nextButtonPressed();
    page.showClarityPressed();
    ASSERT_TRUE(dispatch.waitForPendingMainWork(1));
    container.nextButtonPressed();
    EXPECT_EQ(page.trouble(), "");
}

TEST_F(CalibrationRunsTest, ARunThatIsOnlyStartingIsLookedAtAgainSoon) {
    int changes = 0;
    const auto subscription = velmorindal.objectWillChange.subscribe([&] { ++changes; });
    beginRunThatIsOnlyStarting();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(page.untilNextLook(), std::chrono::milliseconds{100});
}

TEST_F(CalibrationRunsTest, EachDisplayThatDidNotStartIsSaidOnce) {
    container.currentState = wizardState::Calibration;
    FocusPlan plan{container};
    Announcements announcements{container, plan};
    announcements.due();
    for (int attempt = 0; attempt < 2; ++attempt) {
        dongle.onNext(VelmorindalMessageType::autoTune, Fault::errorFrame());
        page.showClarityPressed();
        finishBackground();
        EXPECT_EQ(announcements.due(), CalibrationPanelView::couldNotStartText);
        EXPECT_EQ(announcements.due(), std::nullopt);
    }
}

}  // namespace
}  // namespace velmorindal
