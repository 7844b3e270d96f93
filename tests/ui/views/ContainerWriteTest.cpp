#include "simulator/VirtualDongle.h"
#include "ui/views/WizardTest.h"

namespace velmorindal {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view successBody =
    "Congratulations! Your Velmorindal has been successfully programmed.\n\nYour configuration can be saved "
    "to disk to "
    "save time next time.\n\nWould you like to save these settings to a file?";
constexpr std::string_view failureBody =
    "There was an error writing your configuration to the device.\n\nYour configuration can be saved to disk "
    "in order "
    "to try again.\n\nWould you like to save these settings to a file?";

class ContainerWriteTest : public WizardTest {
  protected:
    void SetUp() override { container.currentState = wizardState::Summary; }
};

TEST_F(ContainerWriteTest, AWriteThatSucceedsOffersToSaveAFileAndThenToClose) {
    const VirtualDongle dongle{directory.path()};
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

TEST_F(ContainerWriteTest, TheLogTellsTheStepsOfASuccess) {
    const VirtualDongle dongle{directory.path()};
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

TEST_F(ContainerWriteTest, AllIsDoneOnlyAfterTheResultHasArrived) {
    auto lines = linesPrintedBy([&] {
        const VirtualDongle dongle{directory.path()};
        ASSERT_TRUE(connect());
        container.saveButtonPressed();
        ASSERT_TRUE(dispatch.runMainWorkUntil(
            [&] { return velmorindal.connectionState.get() == ConnectionStatus::connected; }));
        velmorindal.lastError = "A warning";
        finishBackground();
    });

    EXPECT_EQ(lines.back(), "All done!");
}

TEST_F(ContainerWriteTest, OnlyCancelIsOfferedFromTheSubmissionOfAWriteToItsResult) {
    const VirtualDongle dongle{directory.path()};
    ASSERT_TRUE(connect());
    container.currentState = wizardState::Summary;
    container.saveButtonPressed();
    EXPECT_EQ(container.currentButtons().rawValue, 1);
    ASSERT_TRUE(dispatch.runMainWorkUntil([&] { return dongle.state().stored.has_value(); }));
    while (container.showingXMLSaveAlert.get() == false && velmorindal.justSaved.get() == false) {
        EXPECT_EQ(container.currentButtons().rawValue, 1);
        ASSERT_TRUE(dispatch.runOneMainWork());
    }
    finishBackground();
    EXPECT_EQ(container.currentButtons().rawValue, 18);
}

TEST_F(ContainerWriteTest, ACutoffThatTheDeviceCannotHoldIsRefusedBeforeAnythingIsSent) {
    const VirtualDongle dongle{directory.path()};
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

TEST_F(ContainerWriteTest, TheLogTellsTheStepsOfAFailure) {
    auto lines = linesPrintedBy([&] {
        container.saveButtonPressed();
        finishBackground();
    });

    EXPECT_EQ(std::erase(lines, "background save dispatched"), 1U);
    EXPECT_THAT(lines, ElementsAre("dispatching background save", "Starting save", "Save done. Fail.",
                                   "Could not save."));
}

TEST_F(ContainerWriteTest, SaveReturnsBeforeTheWriteHasRun) {
    const VirtualDongle dongle{directory.path()};
    ASSERT_TRUE(connect());

    container.saveButtonPressed();

    // The write waits for the main queue, which is in the hands of the test.
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::connected);
    EXPECT_EQ(dongle.state().timesStored, 0U);
    finishBackground();
    EXPECT_EQ(dongle.state().timesStored, 1U);
}

TEST_F(ContainerWriteTest, AFailureWithoutATextIsAnUnknwonError) {
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

TEST_F(ContainerWriteTest, AWriteWithoutAConnectionSaysWhyItWasRefused) {
    velmorindal.isValid = true;
    velmorindal.connectionState = ConnectionStatus::disconnected;

    container.saveButtonPressed();
    finishBackground();

    EXPECT_EQ(container.alertTitle.get(), "Save Failed");
    EXPECT_EQ(
        container.alertMessage.get(),
        "The Velmorindal is not connected, or the connection has been lost.\n\nPlease ensure your device is "
        "connected and run this program again.\n\nPlease restart the Velmorindal in configuration mode and "
        "run "
        "this program again.");
}

TEST_F(ContainerWriteTest, AStepThatTheDeviceRefusesIsShownWithItsCode) {
    VirtualDongle dongle{directory.path()};
    ASSERT_TRUE(connect());
    dongle.onNext(VelmorindalMessageType::relayConfig, Fault::errorFrame());

    container.saveButtonPressed();
    finishBackground();

    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::error);
    EXPECT_EQ(
        container.alertMessage.get(),
        "Failed to write instruction to device.\n\nError code: RC/SC\n\nPlease restart the Velmorindal in "
        "configuration mode and run this program again.");
    EXPECT_THAT(raisedTitles(), ElementsAre("Save Failed", "Write Configuration File?"));
    EXPECT_EQ(container.currentButtons().rawValue, 11);
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

TEST_F(ContainerWriteTest, TheTextsOfAFailureAreInPlaceBeforeItsDialogIsRaised) {
    std::vector<std::string> setBeforeEachChange;
    const auto subscription = container.objectWillChange.subscribe([&] {
        std::string fields;
        fields += container.xmlSaveBody.get().empty() ? "" : "body ";
        fields += container.alertTitle.get().empty() ? "" : "title ";
        fields += container.alertMessage.get().empty() ? "" : "message ";
        fields += container.showingGenericAlert.get() ? "alert" : "";
        setBeforeEachChange.push_back(fields);
    });

    container.writeEnded(false, "The reason.");
    EXPECT_FALSE(container.showingXMLSaveAlert.get());
    container.offerSettingsFile();

    EXPECT_THAT(setBeforeEachChange,
                ElementsAre("", "body ", "body title ", "body title message ", "body title message alert"));
    EXPECT_TRUE(container.showingXMLSaveAlert.get());
}

TEST_F(ContainerWriteTest, ASuccessWithATextIsAWarning) {
    EXPECT_THAT(linesPrintedBy([&] { container.writeEnded(true, "Be careful."); }),
                ElementsAre("Saved, with warnings."));
    container.offerSettingsFile();

    EXPECT_EQ(container.alertTitle.get(), "Warning");
    EXPECT_EQ(container.alertMessage.get(), "Be careful.");
    EXPECT_EQ(container.xmlSaveBody.get(), successBody);
    EXPECT_TRUE(velmorindal.justSaved.get());
    EXPECT_THAT(raisedTitles(), ElementsAre("Warning", "Write Configuration File?"));
}

TEST_F(ContainerWriteTest, TheOfferOfAFileFollowsEveryWrite) {
    VirtualDongle dongle{directory.path()};
    ASSERT_TRUE(connect());
    for (const bool written : {true, false}) {
        if (!written) {
            dongle.unplug();
        }
        container.saveButtonPressed();
        finishBackground();

        EXPECT_TRUE(container.showingXMLSaveAlert.get());
        EXPECT_EQ(container.xmlSaveBody.get(), written ? successBody : failureBody);
        EXPECT_FALSE(container.hasBackgroundWork());
        container.dismiss(DialogId::xmlSave);
    }
}

TEST_F(ContainerWriteTest, AllIsDoneIsSaidBeforeAFileIsOffered) {
    const VirtualDongle dongle{directory.path()};
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

TEST_F(ContainerWriteTest, ASecondSaveWhileAWriteIsUnderWayDoesNothing) {
    const VirtualDongle dongle{directory.path()};
    ASSERT_TRUE(connect());
    container.saveButtonPressed();
    ASSERT_TRUE(dispatch.waitForPendingMainWork(1));

    EXPECT_THAT(linesPrintedBy([&] { container.saveButtonPressed(); }), IsEmpty());
    finishBackground();

    EXPECT_EQ(dongle.state().timesStored, 1U);
    EXPECT_THAT(raisedTitles(), ElementsAre("Write Configuration File?"));
}

TEST_F(ContainerWriteTest, SummaryIsNotLeftWhileAWriteThatHasNotAnnouncedItselfIsUnderWay) {
    const VirtualDongle dongle{directory.path()};
    ASSERT_TRUE(connect());
    container.saveButtonPressed();
    ASSERT_TRUE(dispatch.waitForPendingMainWork(1));

    container.backButtonPressed();
    EXPECT_EQ(container.currentState.get(), wizardState::Summary);
    finishBackground();

    container.backButtonPressed();
    EXPECT_EQ(container.currentState.get(), wizardState::Calibration);
}

TEST_F(ContainerWriteTest, AfterAFailureTheWriteCanBeTriedAgain) {
    container.saveButtonPressed();
    finishBackground();

    const auto lines = linesPrintedBy([&] {
        container.saveButtonPressed();
        finishBackground();
    });

    EXPECT_THAT(linesStarting("Starting save", lines), ElementsAre("Starting save"));
}

TEST_F(ContainerWriteTest, SavingStopsACalibrationRunThatIsOnlyStarting) {
    beginRunThatIsOnlyStarting();

    container.saveButtonPressed();

    EXPECT_FALSE(velmorindal.bgIsProcessing);
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::none);
    finishBackground();
    EXPECT_THAT(raisedTitles(), ElementsAre("Save Failed", "Write Configuration File?"));
}

TEST_F(ContainerWriteTest, TheQuestionWhetherToCloseStaysFirstWhenAWriteEndsBehindIt) {
    container.cancelButtonPressed();
    container.saveButtonPressed();
    finishBackground();

    EXPECT_THAT(raisedTitles(), ElementsAre("Close Program?", "Save Failed", "Write Configuration File?"));
}

}  // namespace
}  // namespace velmorindal
