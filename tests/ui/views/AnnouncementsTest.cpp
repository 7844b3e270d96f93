#include "Announcements.h"

#include "WizardTest.h"

namespace velmorindal {
namespace {

using testing::HasSubstr;
using testing::Not;

class AnnouncementsTest : public WizardTest {
  protected:
    /// Goes to a page and lets its arrival be announced.
    std::string arrivalAt(wizardState page) {
        container.currentState = page;
        return said();
    }
    /// What is said after a refresh; empty where nothing is.
    std::string said() {
        plan.due(false);
        return announcements.due().value_or("");
    }

    FocusPlan plan{container};
    Announcements announcements{container, plan};
};

TEST_F(AnnouncementsTest, AnArrivalIsSaidOnce) {
    EXPECT_EQ(said(), std::string{WelcomePanelView::title}.append("\n").append(WelcomePanelView::body));
    EXPECT_EQ(said(), "");
}

TEST_F(AnnouncementsTest, WhatTheFocusMakesAScreenReaderSayIsLeftToIt) {
    velmorindal.connectionState = ConnectionStatus::connected;
    said();
    EXPECT_THAT(arrivalAt(wizardState::Connect), Not(HasSubstr("It's time to connect")));
    EXPECT_THAT(arrivalAt(wizardState::Mode), Not(HasSubstr("Which mode")));
    EXPECT_EQ(arrivalAt(wizardState::Output), "");
    EXPECT_THAT(arrivalAt(wizardState::Calibration), HasSubstr("It's time to calibrate"));
    EXPECT_THAT(arrivalAt(wizardState::Summary), Not(HasSubstr("You have configured")));

    EXPECT_THAT(arrivalAt(wizardState::Calibration), HasSubstr("It's time to calibrate"));
    EXPECT_EQ(arrivalAt(wizardState::Output), OutputPanelView::question);
    EXPECT_THAT(arrivalAt(wizardState::Mode), HasSubstr("Which mode would you like?"));
    EXPECT_THAT(arrivalAt(wizardState::Connect), HasSubstr("It's time to connect"));
}

TEST_F(AnnouncementsTest, AllTextsOfAPageAreSaidOnArrival) {
    velmorindal.connectionState = ConnectionStatus::connected;
    said();
    const std::string mode = arrivalAt(wizardState::Mode);
    for (const ModePanelView::Explanation& explanation : ModePanelView::explanations) {
        EXPECT_THAT(mode, HasSubstr(std::string{explanation.label}.append(" ").append(explanation.text)));
    }
    using View = CalibrationPanelView;
    std::string calibration;
    for (const std::string_view text :
         {View::title, View::placement, View::clarityHeading, View::clarityExplanation, View::durationHeading,
          View::durationExplanation}) {
        calibration.append(calibration.empty() ? "" : "\n").append(text);
    }
    EXPECT_EQ(arrivalAt(wizardState::Calibration), calibration);
}

TEST_F(AnnouncementsTest, TheRowsOfTheSummaryAreSaidOnArrival) {
    said();
    EXPECT_EQ(arrivalAt(wizardState::Summary), "Mode: Direct mode\nOutput: Switch Jack #2\nClarity: 0.50");
}

TEST_F(AnnouncementsTest, TheReasonOfAFailedWriteIsSaidOnArrivalAfterTheRows) {
    container.currentState = wizardState::Summary;
    container.writeEnded(false, "The reason.");
    container.dismiss(DialogId::generic);
    velmorindal.connectionState = ConnectionStatus::writing;
    EXPECT_THAT(said(),
                HasSubstr("Clarity: 0.50\nWriting data...\nWrite progress 0 percent\nThe reason. Please"));
    EXPECT_EQ(said(), "");
}

TEST_F(AnnouncementsTest, AConnectionIsSaidAtItsEndsAndEachStatusOnce) {
    said();
    EXPECT_THAT(arrivalAt(wizardState::Connect), HasSubstr("Initializing..."));
    velmorindal.connectionState = ConnectionStatus::connecting;
    EXPECT_EQ(said(), "Connecting...\nConnection progress 0 percent");
    velmorindal.readWriteProgress = 3.0;
    EXPECT_EQ(said(), "");
    velmorindal.connectionState = ConnectionStatus::connected;
    EXPECT_EQ(said(), "Connection progress 100 percent\nConnection successful. Press \"Next\" to continue.");
    EXPECT_EQ(said(), "");
    velmorindal.connectionState = ConnectionStatus::error;
    EXPECT_EQ(said(), "Unknown Error. Please quit and restart this program.");
}

TEST_F(AnnouncementsTest, TheReasonOfAFailedConnectionIsSaidOnArrivalAfterTheStatus) {
    velmorindal.connectionState = ConnectionStatus::error;
    container.connectPanel.keepReason("The reason.");
    said();
    EXPECT_THAT(arrivalAt(wizardState::Connect), HasSubstr("restart this program.\nThe reason.\n"));
}

TEST_F(AnnouncementsTest, ABarWhoseEndNobodyHeardIsNotSaidToEndAtTheNextArrival) {
    said();
    arrivalAt(wizardState::Connect);
    velmorindal.connectionState = ConnectionStatus::connecting;
    said();
    velmorindal.connectionState = ConnectionStatus::connected;
    arrivalAt(wizardState::Mode);
    const std::string back = arrivalAt(wizardState::Connect);
    EXPECT_THAT(back, HasSubstr("Connection successful."));
    EXPECT_THAT(back, Not(HasSubstr("percent")));
}

TEST_F(AnnouncementsTest, AStateThatIsNotThereToStayIsNotSaid) {
    said();
    container.nextButtonPressed();
    ASSERT_TRUE(container.hasBackgroundWork());
    EXPECT_EQ(said(), ConnectPanelView::loadText);
    finishBackground();
}

TEST_F(AnnouncementsTest, WhatADialogCoversIsSaidWhenItIsGone) {
    said();
    container.nextButtonPressed();
    said();
    finishBackground();
    ASSERT_EQ(raisedTitles(), std::vector<std::string>{"Connection Failed"});
    EXPECT_EQ(said(), "");

    pressInDialog("OK");

    EXPECT_EQ(said(), container.connectPanel.statusText());
}

TEST_F(AnnouncementsTest, NextIsSaidWhenItGoesAndReturns) {
    velmorindal.outputMode = OutputMode::LongShort;
    said();
    arrivalAt(wizardState::Mode);
    velmorindal.longEnabled = false;
    EXPECT_EQ(said(), Announcements::nextIsGone);
    EXPECT_EQ(said(), "");
    velmorindal.shortEnabled = true;
    EXPECT_EQ(said(), Announcements::nextIsBack);
}

TEST_F(AnnouncementsTest, ThatNextIsNotThereIsSaidAtTheEndOfTheArrival) {
    velmorindal.outputMode = OutputMode::LongShort;
    velmorindal.longEnabled = false;
    said();
    EXPECT_THAT(arrivalAt(wizardState::Mode),
                testing::EndsWith("\nNext is not available. Enable an output."));
    EXPECT_EQ(said(), "");
}

TEST_F(AnnouncementsTest, ADisplayIsSaidWhenItRunsAndStopsAndEachHumBetween) {
    said();
    arrivalAt(wizardState::Calibration);
    velmorindal.pollingState = PollingState::duration;
    EXPECT_EQ(said(), Announcements::durationRuns);
    ++velmorindal.readingsReceived;
    velmorindal.detectedDuration = 1.6;
    EXPECT_EQ(said(), "1.60 seconds, long");
    EXPECT_EQ(said(), "");
    velmorindal.pollingState = PollingState::none;
    EXPECT_EQ(said(), Announcements::durationStopped);
    velmorindal.pollingState = PollingState::clarity;
    EXPECT_EQ(said(), Announcements::clarityRuns);
    velmorindal.pollingState = PollingState::none;
    EXPECT_EQ(said(), Announcements::clarityStopped);
}

TEST_F(AnnouncementsTest, ThatADisplayStoppedIsNotSaidAtTheNextArrival) {
    said();
    arrivalAt(wizardState::Calibration);
    velmorindal.pollingState = PollingState::duration;
    said();
    velmorindal.pollingState = PollingState::none;
    arrivalAt(wizardState::Output);
    EXPECT_THAT(arrivalAt(wizardState::Calibration), Not(HasSubstr("stopped")));
}

TEST_F(AnnouncementsTest, AHumThatADialogCoveredIsPastWhenItIsGone) {
    said();
    arrivalAt(wizardState::Calibration);
    velmorindal.pollingState = PollingState::duration;
    said();
    container.connectPanel.loadFailed("Missing cutoff");
    ++velmorindal.readingsReceived;
    velmorindal.detectedDuration = 1.6;
    EXPECT_EQ(said(), "");
    container.dismiss(DialogId::loadError);
    EXPECT_EQ(said(), "");

    ++velmorindal.readingsReceived;
    velmorindal.detectedDuration = 0.4;
    EXPECT_EQ(said(), "0.40 seconds, short");
}

TEST_F(AnnouncementsTest, AWriteIsSaidAtItsEnds) {
    said();
    arrivalAt(wizardState::Summary);
    velmorindal.connectionState = ConnectionStatus::writing;
    EXPECT_EQ(said(), "Writing data...\nWrite progress 0 percent");
    velmorindal.connectionState = ConnectionStatus::connected;
    velmorindal.justSaved = true;
    EXPECT_EQ(said(),
              "Write progress 100 percent\nSettings successfully written. Please restart your Velmorindal.");
}

TEST_F(AnnouncementsTest, AWriteIsSaidWhileItIsUnderWay) {
    const InProcessDongle dongle{system, directory.path()};
    ASSERT_TRUE(connect());
    said();
    arrivalAt(wizardState::Summary);
    container.saveButtonPressed();
    ASSERT_TRUE(dispatch.runOneMainWork());
    ASSERT_TRUE(container.hasBackgroundWork());
    EXPECT_EQ(said(), "Writing data...\nWrite progress 0 percent");
    finishBackground();
}

}  // namespace
}  // namespace velmorindal
