#include "ConnectPanelView.h"

#include <fstream>
#include <utility>

#include "WizardTest.h"

namespace velmorindal {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::array allConnectionStates{ConnectionStatus::idle,      ConnectionStatus::connecting,
                                         ConnectionStatus::connected, ConnectionStatus::disconnected,
                                         ConnectionStatus::writing,   ConnectionStatus::error};

constexpr std::string_view completeFile =
    R"(<VibrationSwitch OutputPath="USBKeyboard" OutputMode="LongShort" LongOutputEnabled="false" )"
    R"(ShortOutputEnabled="true" LongOutputKey="Tab" ShortOutputKey="~3" DirectOutputKey="F12" )"
    R"(Sensitivity="0.25" Cutoff="0.75"></VibrationSwitch>)";

class ConnectPanelViewTest : public PanelTest {
  protected:
    /// A file in the temporary directory that holds `text`.
    std::string file(std::string_view name, std::string_view text) const {
        std::string path = (directory.path() / name).string();
        std::ofstream{path} << text;
        return path;
    }

    TemporaryDirectory directory;
    PretendFilePanel filePanel;
    ChangeNotifier objectWillChange;
    ConnectPanelView page{velmorindal, filePanel, objectWillChange};
};

TEST_F(ConnectPanelViewTest, SaysWhatItIsForAndWhatLoadingDoes) {
    EXPECT_EQ(ConnectPanelView::title, "It's time to connect to the Velmorindal.");
    EXPECT_EQ(
        ConnectPanelView::loadText,
        "If you have previously saved a configuration, you can load it here.\nThese settings will not be "
        "saved to the Velmorindal until the end.");
    EXPECT_EQ(ConnectPanelView::loadLabel, "Load");
    EXPECT_EQ(ConnectPanelView::progressBarName, "Connection progress");
}

TEST_F(ConnectPanelViewTest, TheStatusLineFollowsTheConnectionStateAndTheBarIsThereWhileConnecting) {
    const std::array<std::pair<ConnectionStatus, std::string_view>, 6> lines{{
        {ConnectionStatus::idle, "Initializing..."},
        {ConnectionStatus::connecting, "Connecting..."},
        {ConnectionStatus::connected, "Connection successful. Press \"Next\" to continue."},
        {ConnectionStatus::disconnected, "Not Connected"},
        {ConnectionStatus::writing, "Unknown Error. Please quit and restart this program."},
        {ConnectionStatus::error, "Unknown Error. Please quit and restart this program."},
    }};
    for (const auto& [state, line] : lines) {
        velmorindal.connectionState = state;
        EXPECT_EQ(page.statusText(), line);
        EXPECT_EQ(page.progressBar().has_value(), state == ConnectionStatus::connecting) << line;
    }
}

TEST_F(ConnectPanelViewTest, TheBarCountsSixStepsInGreenOnVeryLightGrey) {
    velmorindal.connectionState = ConnectionStatus::connecting;
    velmorindal.readWriteProgress = 3.0;

    const ProgressBar bar = page.progressBar().value();

    EXPECT_DOUBLE_EQ(bar.value, 3.0);
    EXPECT_DOUBLE_EQ(bar.maxValue, 6.0);
    EXPECT_DOUBLE_EQ(bar.fillWidth(100.0), 50.0);
    EXPECT_TRUE(bar.backgroundEnabled);
    EXPECT_EQ(bar.backgroundColor, colors::veryLightGrey);
    EXPECT_EQ(bar.foregroundColor, colors::green);
}

TEST_F(ConnectPanelViewTest, LoadAsksForAnXmlFileAndNothingElse) {
    const auto lines = linesPrintedBy([&] { page.loadButtonPressed(); });

    EXPECT_THAT(lines, ElementsAre("Load pressed"));
    EXPECT_EQ(filePanel.purpose, "open");
    EXPECT_THAT(filePanel.allowedTypes, ElementsAre("xml"));
}

TEST_F(ConnectPanelViewTest, AFileLoadsInEveryConnectionStateWithoutAnyDialog) {
    const std::string path = file("settings.xml", completeFile);
    for (const ConnectionStatus state : allConnectionStates) {
        velmorindal.connectionState = state;
        velmorindal.outputPath = OutputPath::Switch;

        page.loadButtonPressed();
        filePanel.choose(path);

        EXPECT_EQ(velmorindal.outputPath.get(), OutputPath::USBKeyboard) << caseName(state);
        EXPECT_EQ(velmorindal.connectionState.get(), state);
        EXPECT_FALSE(page.raisedDialog().has_value());
    }
    EXPECT_EQ(velmorindal.outputMode.get(), OutputMode::LongShort);
    EXPECT_TRUE(velmorindal.shortEnabled.get());
    EXPECT_FALSE(velmorindal.longEnabled.get());
    EXPECT_EQ(
        velmorindal.outputKeys.get(),
        (keyList{.directKey = OutputKey::F12, .shortKey = OutputKey::Tilde3, .longKey = OutputKey::Tab}));
    EXPECT_EQ(velmorindal.clarity.get(), 0.25F);
    EXPECT_EQ(velmorindal.cutoff.get(), 0.75F);
}

TEST_F(ConnectPanelViewTest, DismissingThePanelDoesNothing) {
    page.loadButtonPressed();
    const auto lines = linesPrintedBy([&] { filePanel.dismiss(); });

    EXPECT_THAT(lines, IsEmpty());
    EXPECT_FALSE(page.raisedDialog().has_value());
    EXPECT_EQ(velmorindal.lastError.get(), std::nullopt);
}

TEST_F(ConnectPanelViewTest, AFileThatCannotBeReadRaisesTheLoadErrorDialogWithTheReason) {
    page.loadButtonPressed();
    const auto lines = linesPrintedBy([&] { filePanel.choose((directory.path() / "missing.xml").string()); });

    EXPECT_THAT(lines, ElementsAre("Could not read XML:  Could not load contents of XML file"));
    const Dialog dialog = page.raisedDialog().value();
    EXPECT_EQ(dialog.id, DialogId::loadError);
    EXPECT_EQ(dialog.title, "Could Not Load XML File");
    EXPECT_EQ(dialog.message,
              "Could not load contents of XML file\n\nSettings from the file were NOT loaded.");
    ASSERT_EQ(dialog.buttons.size(), 1U);
    EXPECT_EQ(dialog.buttons[0].label, "OK");
    EXPECT_EQ(dialog.buttons[0].role, DialogRole::acknowledge);
}

TEST_F(ConnectPanelViewTest, AFailureWithoutATextIsUnknownInTheDialogAndWeirdInTheLog) {
    const auto lines = linesPrintedBy([&] { page.loadFailed(std::nullopt); });

    EXPECT_THAT(lines, ElementsAre("Could not read XML:  Something weird happened"));
    EXPECT_EQ(page.raisedDialog().value().title, "Could Not Load XML File");
    EXPECT_EQ(page.raisedDialog().value().message,
              "An unknown error occurred\n\nSettings from the file were NOT loaded.");
}

TEST_F(ConnectPanelViewTest, TheReasonIsThatOfTheLastFailure) {
    page.loadFailed("Missing cutoff");
    page.keepReason("");
    EXPECT_EQ(page.lastReason(), "");
    page.keepReason("No dongle.\n\nPlug it in.\nThen try again.");
    EXPECT_EQ(page.lastReason(), "No dongle. Plug it in. Then try again.");
    page.loadFailed("Missing clarity");
    EXPECT_EQ(page.lastReason(), "Missing clarity Settings from the file were NOT loaded.");
}

TEST_F(ConnectPanelViewTest, AFileThatLoadsTakesAwayTheReasonOfLoadingAlone) {
    page.keepReason("No dongle.");
    page.loadFailed("Missing cutoff");
    page.loadButtonPressed();
    filePanel.choose(file("settings.xml", completeFile));
    EXPECT_EQ(page.lastReason(), "No dongle.");
}

TEST_F(ConnectPanelViewTest, AFailureIsAnnouncedStepByStepAndLoggedAfterItsDialogIsRaised) {
    const auto parts = [this] { return partsInPlace(page.alertTitle, page.alertMessage, page.showingAlert); };

    EXPECT_THAT(statesDuring(objectWillChange, parts, [&] { page.loadFailed("Missing cutoff"); }),
                ElementsAre("", "title ", "title message ",
                            "title message flag Could not read XML:  Missing cutoff\n"));
}

}  // namespace
}  // namespace velmorindal
