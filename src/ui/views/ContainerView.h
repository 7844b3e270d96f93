#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "ButtonOptions.h"
#include "CalibrationPanelView.h"
#include "ChangeNotifier.h"
#include "ConnectPanelView.h"
#include "Dialog.h"
#include "Dispatch.h"
#include "FilePanel.h"
#include "ModePanelView.h"
#include "OutputPanelView.h"
#include "Published.h"
#include "SummaryPanelView.h"
#include "VelmorindalSwitch.h"
#include "WelcomePanelView.h"
#include "wizardState.h"

namespace velmorindal {

class ContainerView;

/// A button of the row below the page.
struct NavigationButton {
    std::string_view label;
    /// The bit of currentButtons() that shows it.
    ButtonOptions option;
    void (ContainerView::*pressed)();
};

/// The page of a state.
using Panel = std::variant<WelcomePanelView*, ConnectPanelView*, ModePanelView*, OutputPanelView*,
                           CalibrationPanelView*, SummaryPanelView*>;

/// The wizard itself: the current page, its buttons, where they lead, and the dialogs that are raised.
///
/// Main thread only. The connection attempt and the write run in the background and post their results to the
/// main queue. Changes are announced on `objectWillChange`, and those of the model on the model's notifier; a
/// renderer watches both.
class ContainerView {
  public:
    /// `terminate` asks the application to end and may return. The references must outlive the container. The
    /// container must outlive every background run that it started, with the work that the run posts to the
    /// main queue.
    ContainerView(VelmorindalSwitch& model, Dispatch& dispatch, FilePanel& filePanel,
                  std::function<void()> terminate);
    ContainerView(const ContainerView&) = delete;
    ContainerView& operator=(const ContainerView&) = delete;
    ~ContainerView() = default;

    ChangeNotifier objectWillChange;

    VelmorindalSwitch& velmorindal;
    Published<wizardState> currentState{objectWillChange, wizardState::Welcome};
    /// Not used: the state of the model counts.
    Published<ConnectionStatus> connectionState{objectWillChange, ConnectionStatus::idle};
    /// While it is false the Close button does nothing. The program never clears it.
    Published<bool> canCloseWithoutPrompting{objectWillChange, true};
    Published<bool> showingClosingAlert{objectWillChange, false};
    Published<bool> showingSaveAlert{objectWillChange, false};
    Published<bool> showingXMLSaveAlert{objectWillChange, false};
    Published<std::string> xmlSaveBody{objectWillChange, {}};
    Published<std::string> alertTitle{objectWillChange, {}};
    Published<std::string> alertMessage{objectWillChange, {}};
    Published<bool> showingGenericAlert{objectWillChange, false};
    /// Not used: the pages share `velmorindal`.
    VelmorindalSwitch theSwitch;

    WelcomePanelView welcomePanel;
    ConnectPanelView connectPanel;
    ModePanelView modePanel;
    OutputPanelView outputPanel;
    CalibrationPanelView calibrationPanel;
    SummaryPanelView summaryPanel;

    /// Shown at the bottom of the step column.
    static constexpr std::string_view versionText = "Version 1.1M";

    /// Every navigation button, left to right. One that is not in currentButtons() is hidden, not disabled.
    static const std::array<NavigationButton, 5>& navigationButtons();

    /// The buttons of the current page in its present state.
    ButtonOptions currentButtons() const;

    /// The page of `currentState`.
    Panel currentPanel();

    /// Go to the next page and to the previous one. From Welcome, Next also starts the connection attempt
    /// unless one was made. They stop a calibration run first and block until it has ended. Back does not
    /// leave Summary while a write is running. Both clear `justSaved`.
    void nextButtonPressed();
    void backButtonPressed();
    /// Raises the dialog that asks whether to close.
    void cancelButtonPressed();
    /// The Save button: raises the dialog that asks whether to write the settings to the device.
    void savePressed();
    /// Stops a calibration run, blocks until it has ended, and asks the application to end.
    void closeButtonPressed();

    /// Starts writing the settings to the device in the background, after stopping a calibration run. Does
    /// nothing from the submission of a write until its offer to save a file is raised: two writes never
    /// share the port. If the cutoff does not fit the device, raises a message and writes nothing.
    void saveButtonPressed();
    /// Asks for a file and writes the settings to it.
    void saveXMLButtonPressed();

    /// The end of a connection attempt: raises the general message for a failure or a warning. `result` is
    /// what connect() returned.
    void connectionAttemptEnded(const OperationResult& result);
    /// The end of a write: sets the texts, and raises the general message for a failure or a warning.
    void writeEnded(bool written, const std::optional<std::string>& lastError);
    /// Raises the offer to save a settings file. Called after writeEnded(), when the background work
    /// has ended.
    void offerSettingsFile();

    /// Whether a connection attempt or a write was started whose result has not arrived. The container must
    /// not be destroyed while it is true.
    bool hasBackgroundWork() const { return connectionAttemptUnderWay_ || writeUnderWay_ || offerToCome_; }

    /// Whether a dialog or a file panel covers the page.
    bool isCovered();

    /// The dialogs whose flags are set, with that of the Connect page, in the order in which to show them:
    /// one at a time, each until it is dismissed.
    std::vector<Dialog> raisedDialogs();

    /// Clears the dialog's flag. Call it before the action of the button that was pressed.
    void dismiss(DialogId dialog);

  private:
    void startConnectionAttempt();
    /// Sets the settings of a loaded file again once all of the device's settings are read: a file loaded
    /// during the reading would otherwise be mixed with them.
    void applyLoadedSettings();

    Dispatch& dispatch_;
    FilePanel& filePanel_;
    std::function<void()> terminate_;
    /// Submitted, without a result yet. The model's `connectionState` changes only some time after
    /// the submission.
    bool connectionAttemptUnderWay_ = false;
    bool writeUnderWay_ = false;
    /// A write was submitted, and the offer to save a file has not been raised yet.
    bool offerToCome_ = false;
    bool savePanelIsOpen_ = false;
};

}  // namespace velmorindal
