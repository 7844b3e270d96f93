#include "InProcessDongle.h"
#include "WizardTest.h"

namespace velmorindal {
namespace {

using testing::ElementsAre;

constexpr std::string_view successBody =
    "Congratulations! Your Velmorindal has been successfully programmed.\n\nYour configuration can be saved "
    "to disk to save time next time.\n\nWould you like to save these settings to a file?";
constexpr std::string_view failureBody =
    "There was an error writing your configuration to the device.\n\nYour configuration can be saved to disk "
    "in order to try again.\n\nWould you like to save these settings to a file?";

class ContainerWriteDialogsTest : public WizardTest {
  protected:
    void SetUp() override { container.currentState = wizardState::Summary; }
};

TEST_F(ContainerWriteDialogsTest, AWriteThatSucceedsOffersToSaveAFileAndThenToClose) {
    const InProcessDongle dongle{system, directory.path()};
    ASSERT_TRUE(connect());
    container.savePressed();
    EXPECT_EQ(container.currentButtons().rawValue, 11);

    pressInDialog("Yes");
    ASSERT_TRUE(dispatch.runOneMainWork());
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::writing);
    EXPECT_EQ(container.currentButtons().rawValue, 1);
    EXPECT_EQ(container.summaryPanel.statusText(), "Writing data...");
    finishBackground();

    EXPECT_EQ(dongle.state().timesStored, 1U);
    EXPECT_TRUE(velmorindal.justSaved.get());
    EXPECT_EQ(container.xmlSaveBody.get(), successBody);
    EXPECT_EQ(container.currentButtons().rawValue, 18);
    EXPECT_THAT(raisedTitles(), ElementsAre("Write Configuration File?"));
}

TEST_F(ContainerWriteDialogsTest, ACutoffThatTheDeviceCannotHoldIsRefusedBeforeAnythingIsSent) {
    const InProcessDongle dongle{system, directory.path()};
    ASSERT_TRUE(connect());
    const std::size_t sent = dongle.receivedFrames().size();
    for (const float cutoff : {5000.0F, -1.0F}) {
        velmorindal.cutoff = cutoff;
        container.saveButtonPressed();
        finishBackground();
        EXPECT_THAT(raisedTitles(), ElementsAre("Save Failed"));
        EXPECT_EQ(container.alertMessage.get(),
                  "The cutoff between short and long hums is out of the device's range.\n\nPlease move its "
                  "slider on the Calibration page. Nothing has been written to the device.");
        container.dismiss(DialogId::generic);
    }
    EXPECT_EQ(dongle.receivedFrames().size(), sent);
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::connected);
}

TEST_F(ContainerWriteDialogsTest, ThatTheCutoffWasRefusedIsShownUntilItFits) {
    velmorindal.cutoff = 5000.0F;
    container.saveButtonPressed();
    EXPECT_THAT(container.summaryPanel.lastReason(), testing::StartsWith("The cutoff between"));
    velmorindal.cutoff = 2.0F;
    EXPECT_EQ(container.summaryPanel.lastReason(), "");

    container.writeEnded(false, "The reason.");
    EXPECT_THAT(container.summaryPanel.lastReason(), testing::StartsWith("The reason. Please restart"));
}

TEST_F(ContainerWriteDialogsTest, AFailureWithoutATextIsAnUnknwonError) {
    // No settings were ever read: the model refuses without a text.
    container.saveButtonPressed();
    finishBackground();

    EXPECT_THAT(raisedTitles(), ElementsAre("Save Failed", "Write Configuration File?"));
    EXPECT_EQ(container.alertMessage.get(),
              "(Unknwon Error)\n\nPlease restart the Velmorindal in configuration mode and run this program "
              "again.");
    EXPECT_EQ(container.xmlSaveBody.get(), failureBody);
    EXPECT_FALSE(velmorindal.justSaved.get());
}

TEST_F(ContainerWriteDialogsTest, TheReasonOfAFailedWriteStandsOnTheConnectPageToo) {
    container.writeEnded(false, "The reason.");

    EXPECT_EQ(container.connectPanel.lastReason(), container.summaryPanel.lastReason());
    EXPECT_THAT(container.connectPanel.lastReason(), testing::StartsWith("The reason. Please restart"));
}

TEST_F(ContainerWriteDialogsTest, AFailureIsLoggedAfterItsDialogIsRaised) {
    // The first step is that of the offer to save a file.
    EXPECT_THAT(stepsOfRaising([&] { container.writeEnded(false, "The reason."); }),
                ElementsAre("", "", "title ", "title message ", "title message flag Could not save.\n"));
}

TEST_F(ContainerWriteDialogsTest, ASuccessWithATextIsAWarningAndLoggedAfterItsDialogIsRaised) {
    EXPECT_THAT(
        stepsOfRaising([&] { container.writeEnded(true, "Be careful."); }),
        ElementsAre("", "", "title ", "title message ", "title message flag Saved, with warnings.\n"));
    container.offerSettingsFile();

    EXPECT_EQ(container.alertTitle.get(), "Warning");
    EXPECT_EQ(container.alertMessage.get(), "Be careful.");
    EXPECT_EQ(container.summaryPanel.lastReason(), "Be careful.");
    EXPECT_EQ(container.xmlSaveBody.get(), successBody);
    EXPECT_TRUE(velmorindal.justSaved.get());
    EXPECT_THAT(raisedTitles(), ElementsAre("Warning", "Write Configuration File?"));
}

TEST_F(ContainerWriteDialogsTest, AllIsDoneIsSaidBeforeAFileIsOffered) {
    const InProcessDongle dongle{system, directory.path()};
    ASSERT_TRUE(connect());
    const auto lines = linesPrintedBy([&] {
        container.saveButtonPressed();
        ASSERT_TRUE(dispatch.runMainWorkUntil([&] { return velmorindal.justSaved.get(); }));
        EXPECT_FALSE(container.showingXMLSaveAlert.get());
        ASSERT_TRUE(dispatch.waitForPendingMainWork(1));
    });
    EXPECT_FALSE(container.showingXMLSaveAlert.get());
    EXPECT_EQ(lines.back(), "All done!");
    finishBackground();
    EXPECT_TRUE(container.showingXMLSaveAlert.get());
}

TEST_F(ContainerWriteDialogsTest, TheQuestionWhetherToCloseStaysFirstWhenAWriteEndsBehindIt) {
    container.cancelButtonPressed();
    container.saveButtonPressed();
    finishBackground();

    EXPECT_THAT(raisedTitles(), ElementsAre("Close Program?", "Save Failed", "Write Configuration File?"));
}

}  // namespace
}  // namespace velmorindal
