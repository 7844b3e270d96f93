#include "ContainerView.h"

#include <cstddef>
#include <utility>

#include "Print.h"

namespace velmorindal {
namespace {

wizardState following(wizardState state) {
    return allWizardStates.at(static_cast<std::size_t>(state) + 1);
}

wizardState preceding(wizardState state) {
    return allWizardStates.at(static_cast<std::size_t>(state) - 1);
}

ButtonOptions connectButtons(ConnectionStatus status) {
    switch (status) {
        case ConnectionStatus::idle:
            return ButtonOptions::Back | ButtonOptions::Close;
        case ConnectionStatus::connecting:
            return ButtonOptions::Cancel;
        case ConnectionStatus::connected:
            return ButtonOptions::Cancel | ButtonOptions::Back | ButtonOptions::Next;
        case ConnectionStatus::disconnected:
        case ConnectionStatus::writing:
        case ConnectionStatus::error:
            break;
    }
    return ButtonOptions::Close;
}

ButtonOptions calibrationButtons(PollingState polling) {
    if (polling != PollingState::none) {
        return ButtonOptions::None;
    }
    return ButtonOptions::Cancel | ButtonOptions::Back | ButtonOptions::Next;
}

ButtonOptions summaryButtons(bool writing, bool justSaved) {
    if (writing) {
        return ButtonOptions::Cancel;
    }
    if (justSaved) {
        return ButtonOptions::Back | ButtonOptions::Close;
    }
    return ButtonOptions::Cancel | ButtonOptions::Back | ButtonOptions::Save;
}

}  // namespace

ContainerView::ContainerView(VelmorindalSwitch& model, Dispatch& dispatch, FilePanel& filePanel,
                             std::function<void()> terminate)
    : velmorindal{model},
      theSwitch{dispatch, model.system()},
      connectPanel{model, filePanel, objectWillChange},
      modePanel{model},
      outputPanel{model},
      calibrationPanel{model},
      summaryPanel{model},
      dispatch_{dispatch},
      filePanel_{filePanel},
      terminate_{std::move(terminate)} {}

const std::array<NavigationButton, 5>& ContainerView::navigationButtons() {
    static const std::array<NavigationButton, 5> buttons{{
        {.label = "Cancel", .option = ButtonOptions::Cancel, .pressed = &ContainerView::cancelButtonPressed},
        {.label = "Back", .option = ButtonOptions::Back, .pressed = &ContainerView::backButtonPressed},
        {.label = "Next", .option = ButtonOptions::Next, .pressed = &ContainerView::nextButtonPressed},
        {.label = "Save", .option = ButtonOptions::Save, .pressed = &ContainerView::savePressed},
        {.label = "Close", .option = ButtonOptions::Close, .pressed = &ContainerView::closeButtonPressed},
    }};
    return buttons;
}

ButtonOptions ContainerView::currentButtons() const {
    switch (currentState.get()) {
        case wizardState::Welcome:
            return ButtonOptions::Next | ButtonOptions::Close;
        case wizardState::Connect:
            return connectButtons(velmorindal.connectionState.get());
        case wizardState::Mode:
            return ModePanelView::buttons(velmorindal);
        case wizardState::Output:
            return ButtonOptions::Cancel | ButtonOptions::Back | ButtonOptions::Next;
        case wizardState::Calibration:
            return calibrationButtons(velmorindal.pollingState.get());
        case wizardState::Summary:
            // From the submission of a write to its result: the state `writing` begins later and
            // ends earlier.
            return summaryButtons(
                writeUnderWay_ || velmorindal.connectionState.get() == ConnectionStatus::writing,
                velmorindal.justSaved.get());
    }
    return ButtonOptions::None;
}

Panel ContainerView::currentPanel() {
    switch (currentState.get()) {
        case wizardState::Welcome:
            return &welcomePanel;
        case wizardState::Connect:
            return &connectPanel;
        case wizardState::Mode:
            return &modePanel;
        case wizardState::Output:
            return &outputPanel;
        case wizardState::Calibration:
            return &calibrationPanel;
        case wizardState::Summary:
            break;
    }
    return &summaryPanel;
}

void ContainerView::nextButtonPressed() {
    const wizardState page = currentState.get();
    if (page == wizardState::Summary) {
        print("That's weird.");
    } else {
        if (page == wizardState::Calibration) {
            calibrationPanel.stop();
        }
        // All settings of the device are read, but the attempt may end only after the user's first change on
        // the next page.
        if (page == wizardState::Connect && connectionAttemptUnderWay_ &&
            velmorindal.connectionState.get() == ConnectionStatus::connected) {
            applyLoadedSettings();
        }
        currentState = following(page);
    }
    if (page == wizardState::Welcome && velmorindal.connectionState.get() == ConnectionStatus::idle) {
        startConnectionAttempt();
    }
    velmorindal.justSaved = false;
}

void ContainerView::backButtonPressed() {
    const wizardState page = currentState.get();
    if (page == wizardState::Welcome) {
        print("That's weird.");
    } else if (page != wizardState::Summary || !writeUnderWay_) {
        if (page == wizardState::Calibration) {
            calibrationPanel.stop();
        }
        currentState = preceding(page);
    }
    velmorindal.justSaved = false;
}

void ContainerView::cancelButtonPressed() {
    print("Cancel pressed");
    showingClosingAlert = true;
}

void ContainerView::savePressed() {
    print("Save pressed");
    showingSaveAlert = true;
}

void ContainerView::closeButtonPressed() {
    if (!canCloseWithoutPrompting.get()) {
        return;
    }
    print("Setting polling state from ", velmorindal.pollingState.get(), PollingState::none);
    calibrationPanel.stop();
    terminate_();
}

}  // namespace velmorindal
