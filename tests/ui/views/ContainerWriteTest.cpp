#include "ImmediateDispatch.h"
#include "InProcessDongle.h"
#include "WizardTest.h"

namespace velmorindal {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ContainerWriteTest : public WizardTest {
  protected:
    void SetUp() override { container.currentState = wizardState::Summary; }
};

TEST_F(ContainerWriteTest, TheLogListsTheStepsOfASuccess) {
    const InProcessDongle dongle{system, directory.path()};
    ASSERT_TRUE(connect());

    auto lines = linesPrintedBy([&] {
        container.saveButtonPressed();
        finishBackground();
    });

    // The background may start before the press has printed its second line.
    EXPECT_EQ(std::erase(lines, "background save dispatched"), 1U);
    EXPECT_THAT(lines, ElementsAre("dispatching background save", "Starting save", "Save completed.",
                                   "Save done. pass.", "All done!"));
}

TEST_F(ContainerWriteTest, TheLogSaysThatTheWriteIsDispatchedOnceItIs) {
    ImmediateDispatch atOnce;
    VelmorindalSwitch model{atOnce, system};
    ContainerView view{model, atOnce, filePanel, [] {}};

    const auto lines = linesPrintedBy([&] { view.saveButtonPressed(); });

    EXPECT_THAT(lines, ElementsAre("dispatching background save", "Starting save", "Save done. Fail.",
                                   "Could not save.", "background save dispatched"));
}

TEST_F(ContainerWriteTest, OnlyCancelIsOfferedFromTheSubmissionOfAWriteToItsResult) {
    const InProcessDongle dongle{system, directory.path()};
    ASSERT_TRUE(connect());
    container.saveButtonPressed();
    EXPECT_EQ(container.currentButtons().rawValue, 1);
    ASSERT_TRUE(dispatch.runMainWorkUntil([&] { return dongle.state().stored.has_value(); }));
    while (!container.showingXMLSaveAlert.get() && !velmorindal.justSaved.get()) {
        EXPECT_EQ(container.currentButtons().rawValue, 1);
        ASSERT_TRUE(dispatch.runOneMainWork());
    }
    finishBackground();
    EXPECT_EQ(container.currentButtons().rawValue, 18);
}

TEST_F(ContainerWriteTest, TheResultArrivesByTheMainQueueAndTheOfferOfAFileAfterIt) {
    container.saveButtonPressed();
    ASSERT_TRUE(dispatch.waitForPendingMainWork(1));
    EXPECT_THAT(container.raisedDialogs(), IsEmpty());

    ASSERT_TRUE(dispatch.runOneMainWork());
    EXPECT_THAT(raisedTitles(), ElementsAre("Save Failed"));

    ASSERT_TRUE(dispatch.runOneMainWork());
    EXPECT_THAT(raisedTitles(), ElementsAre("Save Failed", "Write Configuration File?"));
}

TEST_F(ContainerWriteTest, ASecondSaveWhileAWriteIsUnderWayDoesNothing) {
    const InProcessDongle dongle{system, directory.path()};
    ASSERT_TRUE(connect());
    container.saveButtonPressed();
    ASSERT_TRUE(dispatch.waitForPendingMainWork(1));

    EXPECT_THAT(linesPrintedBy([&] { container.saveButtonPressed(); }), IsEmpty());
    finishBackground();

    EXPECT_EQ(dongle.state().timesStored, 1U);
    EXPECT_THAT(raisedTitles(), ElementsAre("Write Configuration File?"));
}

TEST_F(ContainerWriteTest, ASecondSaveBeforeTheOfferOfAFileDoesNothing) {
    container.saveButtonPressed();
    ASSERT_TRUE(dispatch.waitForPendingMainWork(1));
    ASSERT_TRUE(dispatch.runOneMainWork());
    EXPECT_THAT(linesPrintedBy([&] { container.saveButtonPressed(); }), IsEmpty());
    finishBackground();
}

TEST_F(ContainerWriteTest, AWriteThatBeginsIsAnnouncedAndTakesAwayTheLastReason) {
    container.writeEnded(false, "The reason.");
    ASSERT_NE(container.summaryPanel.lastReason(), "");
    int announcements = 0;
    const auto subscription = container.objectWillChange.subscribe([&announcements] { ++announcements; });
    container.saveButtonPressed();
    EXPECT_EQ(announcements, 1);
    EXPECT_EQ(container.summaryPanel.lastReason(), "");
    finishBackground();
}

TEST_F(ContainerWriteTest, SummaryIsNotLeftWhileAWriteThatHasNotAnnouncedItselfIsUnderWay) {
    const InProcessDongle dongle{system, directory.path()};
    ASSERT_TRUE(connect());
    container.saveButtonPressed();
    ASSERT_TRUE(dispatch.waitForPendingMainWork(1));

    container.backButtonPressed();
    EXPECT_EQ(container.currentState.get(), wizardState::Summary);
    finishBackground();

    container.backButtonPressed();
    EXPECT_EQ(container.currentState.get(), wizardState::Calibration);
}

TEST_F(ContainerWriteTest, SavingStopsACalibrationRunThatIsOnlyStarting) {
    beginRunThatIsOnlyStarting();

    container.saveButtonPressed();

    EXPECT_FALSE(velmorindal.bgIsProcessing);
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::none);
    finishBackground();
    EXPECT_THAT(raisedTitles(), ElementsAre("Save Failed", "Write Configuration File?"));
}

}  // namespace
}  // namespace velmorindal
