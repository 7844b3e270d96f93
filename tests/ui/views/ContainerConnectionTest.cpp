#include "InProcessDongle.h"
#include "WizardTest.h"

namespace velmorindal {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view noDongle =
    "Could not detect Velmorindal Dongle.\nPlease ensure that it is plugged into a USB port.";

class ContainerConnectionTest : public WizardTest {};

TEST_F(ContainerConnectionTest, NextFromWelcomeShowsConnectAndStartsTheAttempt) {
    container.nextButtonPressed();
    EXPECT_EQ(container.currentState.get(), wizardState::Connect);

    finishBackground();

    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::error);
    EXPECT_EQ(container.currentState.get(), wizardState::Connect);
    EXPECT_EQ(container.currentButtons().rawValue, 16);
    EXPECT_EQ(container.alertTitle.get(), "Connection Failed");
    EXPECT_EQ(container.alertMessage.get(), noDongle);
    EXPECT_THAT(raisedTitles(), ElementsAre("Connection Failed"));
}

TEST_F(ContainerConnectionTest, ThePageIsSetBeforeTheAttemptStartsAndJustSavedIsClearedAfterThat) {
    std::vector<std::pair<wizardState, bool>> steps;
    const auto note = [&] { steps.emplace_back(container.currentState.get(), scheduler.hasOtherThreads()); };
    const auto page = container.objectWillChange.subscribe(note);
    const auto justSaved = velmorindal.objectWillChange.subscribe(note);

    container.nextButtonPressed();

    EXPECT_THAT(steps, ElementsAre(testing::Pair(wizardState::Welcome, false),
                                   testing::Pair(wizardState::Connect, true)));
    finishBackground();
}

TEST_F(ContainerConnectionTest, ANewAttemptTakesAwayEveryReason) {
    container.connectPanel.keepReason("No dongle.");
    container.connectPanel.loadFailed("Missing cutoff");
    container.nextButtonPressed();
    EXPECT_EQ(container.connectPanel.lastReason(), "");
    finishBackground();
    EXPECT_EQ(container.connectPanel.lastReason(),
              "Could not detect Velmorindal Dongle. Please ensure that it is plugged into a USB port.");
}

TEST_F(ContainerConnectionTest, TheResultArrivesByTheMainQueueOnly) {
    container.nextButtonPressed();
    // The progress, the error state and the result.
    ASSERT_TRUE(dispatch.waitForPendingMainWork(3));
    EXPECT_THAT(container.raisedDialogs(), IsEmpty());

    dispatch.runPendingMainWork();

    EXPECT_THAT(raisedTitles(), ElementsAre("Connection Failed"));
}

TEST_F(ContainerConnectionTest, BackAndNextWhileDonglesAreLookedForStartNoSecondAttempt) {
    const auto lines = linesPrintedBy([&] {
        container.nextButtonPressed();
        container.backButtonPressed();
        EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::idle);
        container.nextButtonPressed();
        finishBackground();
    });

    EXPECT_EQ(linesStarting("No dongles found.", lines).size(), 1U);
    EXPECT_EQ(container.currentState.get(), wizardState::Connect);
}

TEST_F(ContainerConnectionTest, ASuccessWithoutATextShowsNoDialogAtAll) {
    const InProcessDongle dongle{system, directory.path()};

    container.nextButtonPressed();
    finishBackground();

    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::connected);
    EXPECT_EQ(container.currentState.get(), wizardState::Connect);
    EXPECT_EQ(container.currentButtons().rawValue, 7);
    EXPECT_THAT(container.raisedDialogs(), IsEmpty());
}

TEST_F(ContainerConnectionTest, TheEndOfAnAttemptIsAnnouncedAlsoWhereThereIsNothingToSay) {
    const InProcessDongle dongle{system, directory.path()};
    container.nextButtonPressed();
    while (velmorindal.connectionState.get() != ConnectionStatus::connected) {
        ASSERT_TRUE(dispatch.runOneMainWork());
    }
    int announcements = 0;
    const auto subscription = container.objectWillChange.subscribe([&announcements] { ++announcements; });
    finishBackground();
    EXPECT_EQ(announcements, 1);
}

TEST_F(ContainerConnectionTest, AFailureIsLoggedAfterItsDialogIsRaised) {
    EXPECT_THAT(stepsOfRaising(
                    [&] { container.connectionAttemptEnded({.succeeded = false, .text = "The reason."}); }),
                ElementsAre("", "title ", "title message ", "title message flag Could not connect.\n"));

    EXPECT_EQ(container.alertTitle.get(), "Connection Failed");
    EXPECT_EQ(container.alertMessage.get(), "The reason.");
    EXPECT_TRUE(container.showingGenericAlert.get());
}

TEST_F(ContainerConnectionTest, AFailureWithoutATextIsAnUnknownError) {
    container.connectionAttemptEnded({.succeeded = false});

    EXPECT_EQ(container.alertTitle.get(), "Connection Failed");
    EXPECT_EQ(container.alertMessage.get(), "(Unknown Error)");
    EXPECT_TRUE(container.showingGenericAlert.get());
}

TEST_F(ContainerConnectionTest, ASuccessWithATextIsAWarningAndLoggedAfterItsDialogIsRaised) {
    EXPECT_THAT(
        stepsOfRaising([&] { container.connectionAttemptEnded({.text = "Be careful."}); }),
        ElementsAre("", "title ", "title message ", "title message flag Connected, with warnings.\n"));

    EXPECT_EQ(container.alertTitle.get(), "Warning");
    EXPECT_EQ(container.alertMessage.get(), "Be careful.");
    EXPECT_TRUE(container.showingGenericAlert.get());
}

/// A file is loaded while no attempt is under way.
class LoadedBesideAnAttemptTest : public ContainerConnectionTest {
  protected:
    void load() {
        const std::string file = (directory.path() / "settings.xml").string();
        velmorindal.cutoff = 2.0F;
        velmorindal.writeXML(file);
        container.connectPanel.loadButtonPressed();
        filePanel.choose(file);
        velmorindal.cutoff = 2.5F;
    }
};

TEST_F(LoadedBesideAnAttemptTest, ItGivesWayToTheDeviceThatIsReadAfterIt) {
    const InProcessDongle dongle{system, directory.path()};
    load();
    container.nextButtonPressed();
    finishBackground();
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::connected);
    EXPECT_NE(velmorindal.cutoff.get(), 2.0F);
}

TEST_F(LoadedBesideAnAttemptTest, WhatIsChangedAfterItStaysWhenNextIsPressed) {
    velmorindal.connectionState = ConnectionStatus::connected;
    container.currentState = wizardState::Connect;
    load();
    container.nextButtonPressed();
    EXPECT_EQ(velmorindal.cutoff.get(), 2.5F);
}

TEST_F(LoadedBesideAnAttemptTest, WhatIsChangedAfterItStaysWhenAnAttemptFails) {
    load();
    container.connectionAttemptEnded({.succeeded = false});
    EXPECT_EQ(velmorindal.cutoff.get(), 2.5F);
}

/// A file is loaded when half of what the device holds has arrived.
class LoadedWhileReadingTest : public ContainerConnectionTest {
  protected:
    void SetUp() override {
        const std::string file = (directory.path() / "settings.xml").string();
        velmorindal.outputPath = OutputPath::BTKeyboard;
        velmorindal.outputMode = OutputMode::LongShort;
        velmorindal.outputKeys = {OutputKey::F5, OutputKey::F6, OutputKey::F7};
        velmorindal.clarity = 0.25F;
        velmorindal.cutoff = 2.0F;
        velmorindal.writeXML(file);
        saved = velmorindal.chosenSettings();
        container.nextButtonPressed();
        ASSERT_TRUE(dispatch.waitForPendingMainWork(2));
        dispatch.runPendingMainWork();
        for (int change = 0; change < 7; ++change) {
            ASSERT_TRUE(dispatch.runOneMainWork());
        }
        container.connectPanel.loadButtonPressed();
        filePanel.choose(file);
    }

    const InProcessDongle dongle{system, directory.path()};
    ChosenSettings saved{};
};

TEST_F(LoadedWhileReadingTest, AFileWinsWhole) {
    finishBackground();

    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::connected);
    EXPECT_EQ(velmorindal.outputPath.get(), saved.outputPath);
    EXPECT_EQ(velmorindal.outputMode.get(), saved.outputMode);
    EXPECT_EQ(velmorindal.longEnabled.get(), saved.longEnabled);
    EXPECT_EQ(velmorindal.shortEnabled.get(), saved.shortEnabled);
    EXPECT_EQ(velmorindal.outputKeys.get(), saved.outputKeys);
    EXPECT_EQ(velmorindal.clarity.get(), saved.clarity);
    EXPECT_EQ(velmorindal.cutoff.get(), saved.cutoff);
}

TEST_F(LoadedWhileReadingTest, WhatIsChangedAfterTheFileStaysWhenTheAttemptEndsOnlyThen) {
    while (velmorindal.connectionState.get() != ConnectionStatus::connected) {
        ASSERT_TRUE(dispatch.runOneMainWork());
    }
    ASSERT_TRUE(container.hasBackgroundWork());

    container.nextButtonPressed();
    EXPECT_EQ(velmorindal.outputKeys.get(), saved.outputKeys);
    EXPECT_EQ(velmorindal.cutoff.get(), saved.cutoff);
    velmorindal.outputMode = OutputMode::Direct;
    finishBackground();

    EXPECT_FALSE(container.hasBackgroundWork());
    EXPECT_EQ(velmorindal.outputMode.get(), OutputMode::Direct);
    EXPECT_EQ(velmorindal.outputKeys.get(), saved.outputKeys);
}

TEST_F(ContainerConnectionTest, AFileThatLoadsWhileAConnectionFailsLeavesTheConnectionsReason) {
    InProcessDongle dongle{system, directory.path()};
    dongle.onFirst(VelmorindalMessageType::humDuration, Fault::payloadOneByteLonger());
    const std::string file = (directory.path() / "settings.xml").string();
    velmorindal.writeXML(file);
    container.nextButtonPressed();
    ASSERT_TRUE(dispatch.waitForPendingMainWork(2));
    dispatch.runPendingMainWork();
    // Five changes, then the failure waits for its state to be set.
    ASSERT_TRUE(dispatch.waitForPendingMainWork(6));

    container.connectPanel.loadButtonPressed();
    filePanel.choose(file);
    finishBackground();

    EXPECT_EQ(container.alertMessage.get(), "Invalid response from dongle (Error code: VCHD/IV)");
}

}  // namespace
}  // namespace velmorindal
