#include <utility>
#include <variant>

#include "WizardTest.h"

namespace velmorindal {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ContainerNavigationTest : public WizardTest {};

TEST_F(ContainerNavigationTest, StartsOnWelcomeWithNoDialogRaised) {
    EXPECT_EQ(container.currentState.get(), wizardState::Welcome);
    EXPECT_EQ(container.connectionState.get(), ConnectionStatus::idle);
    EXPECT_TRUE(container.canCloseWithoutPrompting.get());
    EXPECT_FALSE(container.showingClosingAlert.get());
    EXPECT_FALSE(container.showingSaveAlert.get());
    EXPECT_FALSE(container.showingXMLSaveAlert.get());
    EXPECT_EQ(container.xmlSaveBody.get(), "");
    EXPECT_EQ(container.alertTitle.get(), "");
    EXPECT_EQ(container.alertMessage.get(), "");
    EXPECT_FALSE(container.showingGenericAlert.get());
    EXPECT_THAT(container.raisedDialogs(), IsEmpty());
}

TEST_F(ContainerNavigationTest, SharesTheModelWithEveryPageAndKeepsAnotherThatNobodyUses) {
    EXPECT_EQ(&container.velmorindal, &velmorindal);
    EXPECT_EQ(&container.connectPanel.velmorindal, &velmorindal);
    EXPECT_EQ(&container.modePanel.velmorindal, &velmorindal);
    EXPECT_EQ(&container.outputPanel.velmorindal, &velmorindal);
    EXPECT_EQ(&container.calibrationPanel.velmorindal, &velmorindal);
    EXPECT_EQ(&container.summaryPanel.velmorindal, &velmorindal);
    EXPECT_NE(&container.theSwitch, &velmorindal);
}

TEST_F(ContainerNavigationTest, NamesItsVersion) {
    EXPECT_EQ(ContainerView::versionText, "Version 1.1M");
}

TEST_F(ContainerNavigationTest, TheButtonRowIsCancelBackNextSaveClose) {
    const auto& buttons = ContainerView::navigationButtons();

    EXPECT_EQ(buttons[0].label, "Cancel");
    EXPECT_EQ(buttons[0].option, ButtonOptions::Cancel);
    EXPECT_EQ(buttons[0].pressed, &ContainerView::cancelButtonPressed);
    EXPECT_EQ(buttons[1].label, "Back");
    EXPECT_EQ(buttons[1].option, ButtonOptions::Back);
    EXPECT_EQ(buttons[1].pressed, &ContainerView::backButtonPressed);
    EXPECT_EQ(buttons[2].label, "Next");
    EXPECT_EQ(buttons[2].option, ButtonOptions::Next);
    EXPECT_EQ(buttons[2].pressed, &ContainerView::nextButtonPressed);
    EXPECT_EQ(buttons[3].label, "Save");
    EXPECT_EQ(buttons[3].option, ButtonOptions::Save);
    EXPECT_EQ(buttons[3].pressed, &ContainerView::savePressed);
    EXPECT_EQ(buttons[4].label, "Close");
    EXPECT_EQ(buttons[4].option, ButtonOptions::Close);
    EXPECT_EQ(buttons[4].pressed, &ContainerView::closeButtonPressed);
}

TEST_F(ContainerNavigationTest, EveryPageHasItsPanel) {
    for (const wizardState state : allWizardStates) {
        container.currentState = state;
        EXPECT_EQ(container.currentPanel().index(), static_cast<std::size_t>(state)) << stepLabel(state);
    }
    EXPECT_EQ(std::get<SummaryPanelView*>(container.currentPanel()), &container.summaryPanel);
}

TEST_F(ContainerNavigationTest, EachPageHasItsButtons) {
    using enum ConnectionStatus;
    using enum wizardState;
    struct Case {
        wizardState page;
        ConnectionStatus connection;
        std::int64_t buttons;
        bool justSaved = false;
        PollingState polling = PollingState::none;
    };
    for (const Case& given : {
             Case{Welcome, idle, 20},
             Case{Connect, idle, 18},
             Case{Connect, connecting, 1},
             Case{Connect, connected, 7},
             Case{Connect, disconnected, 16},
             Case{Connect, writing, 16},
             Case{Connect, error, 16},
             Case{Output, connected, 7},
             Case{Calibration, connected, 7},
             Case{Calibration, connected, 0, false, PollingState::clarity},
             Case{Calibration, connected, 0, false, PollingState::duration},
             Case{Summary, connected, 11},
             Case{Summary, error, 11},
             Case{Summary, error, 18, true},
             Case{Summary, writing, 1, true},
             Case{Summary, writing, 1},
         }) {
        container.currentState = given.page;
        velmorindal.connectionState = given.connection;
        velmorindal.justSaved = given.justSaved;
        velmorindal.pollingState = given.polling;
        EXPECT_EQ(container.currentButtons().rawValue, given.buttons)
            << stepLabel(given.page) << caseName(given.connection) << given.justSaved;
    }
}

TEST_F(ContainerNavigationTest, ItsOwnConnectionStateIsNotConsulted) {
    container.currentState = wizardState::Connect;

    container.connectionState = ConnectionStatus::connected;

    EXPECT_EQ(container.currentButtons().rawValue, 18);
}

TEST_F(ContainerNavigationTest, NextWalksThroughThePagesInOrderAndStaysOnSummary) {
    velmorindal.connectionState = ConnectionStatus::connected;
    std::vector<std::string_view> visited;
    for (int press = 0; press < 5; ++press) {
        container.nextButtonPressed();
        visited.push_back(stepLabel(container.currentState.get()));
    }
    EXPECT_THAT(visited, ElementsAre("Connect", "Mode", "Ouptut", "Calibration", "Summary"));

    EXPECT_THAT(linesPrintedBy([&] { container.nextButtonPressed(); }), ElementsAre("That's weird."));
    EXPECT_EQ(container.currentState.get(), wizardState::Summary);
}

TEST_F(ContainerNavigationTest, BackWalksThroughThePagesInReverseAndStaysOnWelcome) {
    container.currentState = wizardState::Summary;
    std::vector<std::string_view> visited;
    for (int press = 0; press < 5; ++press) {
        container.backButtonPressed();
        visited.push_back(stepLabel(container.currentState.get()));
    }
    EXPECT_THAT(visited, ElementsAre("Calibration", "Ouptut", "Mode", "Connect", "Welcome"));

    EXPECT_THAT(linesPrintedBy([&] { container.backButtonPressed(); }), ElementsAre("That's weird."));
    EXPECT_EQ(container.currentState.get(), wizardState::Welcome);
}

TEST_F(ContainerNavigationTest, JustSavedIsClearedLast) {
    velmorindal.connectionState = ConnectionStatus::connected;
    const auto page = [this] { return std::string{stepLabel(container.currentState.get())}; };
    for (const wizardState state : allWizardStates) {
        for (const auto press : {&ContainerView::nextButtonPressed, &ContainerView::backButtonPressed}) {
            container.currentState = state;
            const auto steps =
                statesDuring(velmorindal.objectWillChange, page, [&] { (container.*press)(); });
            ASSERT_THAT(steps, testing::Not(IsEmpty()));
            EXPECT_EQ(steps.back(), page());
        }
    }
}

TEST_F(ContainerNavigationTest, NextFromWelcomeDoesNotConnectAgainOnceTheStateHasLeftIdle) {
    for (const ConnectionStatus state :
         {ConnectionStatus::connecting, ConnectionStatus::connected, ConnectionStatus::disconnected,
          ConnectionStatus::writing, ConnectionStatus::error}) {
        container.currentState = wizardState::Welcome;
        velmorindal.connectionState = state;

        container.nextButtonPressed();
        finishBackground();

        EXPECT_EQ(container.currentState.get(), wizardState::Connect);
        EXPECT_EQ(velmorindal.connectionState.get(), state);
        EXPECT_THAT(container.raisedDialogs(), IsEmpty());
    }
    velmorindal.connectionState = ConnectionStatus::connected;
    EXPECT_EQ(container.currentButtons().rawValue, 7);
}

TEST_F(ContainerNavigationTest, CloseAsksTheApplicationToEnd) {
    EXPECT_THAT(linesPrintedBy([&] { container.closeButtonPressed(); }),
                ElementsAre("Setting polling state from  none none"));
    EXPECT_EQ(terminations, 1);
}

TEST_F(ContainerNavigationTest, CloseDoesNothingWhileItsGateIsShut) {
    container.canCloseWithoutPrompting = false;
    velmorindal.pollingState = PollingState::clarity;

    EXPECT_THAT(linesPrintedBy([&] { container.closeButtonPressed(); }), IsEmpty());

    EXPECT_EQ(terminations, 0);
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::clarity);
}

TEST_F(ContainerNavigationTest, CloseStopsARunThatIsOnlyStarting) {
    beginRunThatIsOnlyStarting();

    container.closeButtonPressed();

    EXPECT_EQ(terminations, 1);
    EXPECT_FALSE(wasProcessingAtTermination);
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::none);
}

TEST_F(ContainerNavigationTest, LeavingCalibrationStopsARunThatIsOnlyStarting) {
    for (const auto leave : {&ContainerView::nextButtonPressed, &ContainerView::backButtonPressed}) {
        container.currentState = wizardState::Calibration;
        beginRunThatIsOnlyStarting();

        (container.*leave)();

        EXPECT_NE(container.currentState.get(), wizardState::Calibration);
        EXPECT_FALSE(velmorindal.bgIsProcessing);
        EXPECT_EQ(velmorindal.pollingState.get(), PollingState::none);
    }
}

}  // namespace
}  // namespace velmorindal
