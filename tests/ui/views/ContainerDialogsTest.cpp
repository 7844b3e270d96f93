#include <filesystem>

#include "WizardTest.h"

namespace velmorindal {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ContainerDialogsTest : public WizardTest {
  protected:
    /// The only dialog raised.
    Dialog dialog() {
        const auto dialogs = container.raisedDialogs();
        EXPECT_EQ(dialogs.size(), 1U);
        return dialogs.empty() ? Dialog{} : dialogs.front();
    }
};

TEST_F(ContainerDialogsTest, CancelAsksWhetherToCloseTheProgram) {
    EXPECT_THAT(linesPrintedBy([&] { container.cancelButtonPressed(); }), ElementsAre("Cancel pressed"));

    EXPECT_EQ(dialog().id, DialogId::closing);
    EXPECT_EQ(dialog().title, "Close Program?");
    EXPECT_EQ(dialog().message,
              "No changes have been written to the device;\nany updates will be lost.\n\nAre you sure you "
              "want to quit?");
    EXPECT_EQ(terminations, 0);
}

TEST_F(ContainerDialogsTest, YesToClosingAsksTheApplicationToEnd) {
    container.cancelButtonPressed();
    pressInDialog("Yes");

    EXPECT_EQ(terminations, 1);
    EXPECT_THAT(container.raisedDialogs(), IsEmpty());
}

TEST_F(ContainerDialogsTest, SaveAsksWhetherToProgramTheDevice) {
    EXPECT_THAT(linesPrintedBy([&] { container.savePressed(); }), ElementsAre("Save pressed"));

    EXPECT_EQ(dialog().id, DialogId::save);
    EXPECT_EQ(dialog().title, "Save Settings?");
    EXPECT_EQ(dialog().message, "Would you like to program your device with these settings?");
}

TEST_F(ContainerDialogsTest, YesToAFileAsksWhereToSaveXmlAndWritesIt) {
    const std::string path = (directory.path() / "chosen.xml").string();
    container.showingXMLSaveAlert = true;

    pressInDialog("Yes");
    EXPECT_FALSE(container.showingXMLSaveAlert.get());
    EXPECT_EQ(filePanel.purpose, "save");
    EXPECT_THAT(filePanel.allowedTypes, ElementsAre("xml"));
    const auto lines = linesPrintedBy([&] { filePanel.choose(path); });

    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.front(), "URL:  " + path);
    EXPECT_TRUE(std::filesystem::exists(path));
}

TEST_F(ContainerDialogsTest, DismissingTheSavePanelWritesNothing) {
    container.saveXMLButtonPressed();
    EXPECT_THAT(linesPrintedBy([&] { filePanel.dismiss(); }), IsEmpty());

    EXPECT_TRUE(std::filesystem::is_empty(directory.path()));
}

TEST_F(ContainerDialogsTest, AFilePanelCoversThePageUntilItIsAnsweredWhichIsAnnounced) {
    int announcements = 0;
    const auto subscription = container.objectWillChange.subscribe([&announcements] { ++announcements; });
    const auto ask = [this](bool save) {
        if (save) {
            container.saveXMLButtonPressed();
        } else {
            container.connectPanel.loadButtonPressed();
        }
    };
    for (const bool save : {true, false}) {
        EXPECT_FALSE(container.isCovered());
        ask(save);
        EXPECT_TRUE(container.isCovered());
        announcements = 0;
        filePanel.dismiss();
        EXPECT_FALSE(container.isCovered());
        EXPECT_EQ(announcements, 1);
    }
}

TEST_F(ContainerDialogsTest, TheGeneralMessageHasOneButton) {
    container.alertTitle = "Title";
    container.alertMessage = "Message.";
    container.showingGenericAlert = true;

    EXPECT_EQ(dialog().id, DialogId::generic);
    EXPECT_EQ(dialog().title, "Title");
    EXPECT_EQ(dialog().message, "Message.");
    pressInDialog("OK");
    EXPECT_FALSE(container.showingGenericAlert.get());
}

TEST_F(ContainerDialogsTest, TheConnectPagesLoadErrorIsAmongTheDialogs) {
    container.connectPanel.loadFailed("Missing cutoff");

    EXPECT_EQ(dialog().id, DialogId::loadError);
    EXPECT_EQ(dialog().title, "Could Not Load XML File");
    pressInDialog("OK");
    EXPECT_FALSE(container.connectPanel.showingAlert.get());
    EXPECT_THAT(container.raisedDialogs(), IsEmpty());
}

TEST_F(ContainerDialogsTest, WhatTheUserAskedForStandsBeforeResultsAndTheMessageBeforeTheOfferOfAFile) {
    container.showingXMLSaveAlert = true;
    container.alertTitle = "Save Failed";
    container.showingGenericAlert = true;
    container.connectPanel.loadFailed(std::nullopt);
    container.showingSaveAlert = true;
    container.showingClosingAlert = true;

    EXPECT_THAT(raisedTitles(), ElementsAre("Close Program?", "Save Settings?", "Could Not Load XML File",
                                            "Save Failed", "Write Configuration File?"));
}

}  // namespace
}  // namespace velmorindal
