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

/// The wizard itself: which page is up, which buttons it has, where they lead, and which dialogs are raised.
///
/// Main thread only. The connection attempt and the write run in the background and hand their results to the
/// main queue. State is announced on `objectWillChange`, what is read from the model on the model's notifier;
/// a renderer watches both and copies the answers.
class ContainerView {
  public:
    /// `terminate` asks the application to end and may return. What is given here must outlive the container,
    /// and the container every background run that it started and all main-queue work of these.
    ContainerView(VelmorindalSwitch& model, Dispatch& dispatch, FilePanel& filePanel,
                  std::function<void()> terminate);
    ContainerView(const ContainerView&) = delete;
    ContainerView& operator=(const ContainerView&) = delete;
    ~ContainerView() = default;

    ChangeNotifier objectWillChange;

    VelmorindalSwitch& velmorindal;
    Published<wizardState> currentState{objectWillChange, wizardState::Welcome};
    /// Kept and never consulted: the model's own state is what counts.
    Published<ConnectionStatus> connectionState{objectWillChange, ConnectionStatus::idle};
    /// While false the Close button does nothing. Nothing clears it.
    Published<bool> canCloseWithoutPrompting{objectWillChange, true};
    Published<bool> showingClosingAlert{objectWillChange, false};
    Published<bool> showingSaveAlert{objectWillChange, false};
    Published<bool> showingXMLSaveAlert{objectWillChange, false};
    Published<std::string> xmlSaveBody{objectWillChange, {}};
    Published<std::string> alertTitle{objectWillChange, {}};
    Published<std::string> alertMessage{objectWillChange, {}};
    Published<bool> showingGenericAlert{objectWillChange, false};
    /// Made with the view and never used: the pages share `velmorindal`.
    VelmorindalSwitch theSwitch;

    WelcomePanelView welcomePanel;
    ConnectPanelView connectPanel;
    ModePanelView modePanel;
    OutputPanelView outputPanel;
    CalibrationPanelView calibrationPanel;
    SummaryPanelView summaryPanel;

    /// At the foot of the step column.
    static constexpr std::string_view versionText = "Version 1.1M";

    /// Every navigation button, left to right. One that is not in currentButtons() is absent, not disabled.
    static const std::array<NavigationButton, 5>& navigationButtons();

    ButtonOptions currentButtons() const;

    /// The page of `currentState`.
    Panel currentPanel();

    /// Lead to the next page and to the one before. From Welcome, Next also starts the connection attempt
    /// where none was made yet. A calibration run is stopped before its page is left, which blocks until it
    /// has wound down. Summary is not left while a write is under way.
    void nextButtonPressed();
    void backButtonPressed();
    /// Raises the question whether to close.
    void cancelButtonPressed();
    /// Raises the question whether to write the settings to the device: the Save button.
    void savePressed();
    /// Stops a calibration run, waits until it has wound down, and asks the application to end.
    void closeButtonPressed();

    /// Starts writing the settings to the device in the background, after stopping a calibration run. Does
    /// nothing while an earlier write is still under way: two never share the port.
    void saveButtonPressed();
    /// Asks for a file and writes the settings to it.
    void saveXMLButtonPressed();

    /// The end of a connection attempt: raises the general message where there is something to say.
    /// `result` is what connect() returned.
    void connectionAttemptEnded(const OperationResult& result);
    /// The end of a write: sets the texts and raises the general message where there is something to say.
    void writeEnded(bool written, const std::optional<std::string>& lastError);
    /// Follows once the background work of the write has ended: raises the offer to save a file.
    void offerSettingsFile();

    /// Whether a connection attempt or a write has been started whose result is not handed over yet: until
    /// then the container must not be destroyed.
    bool hasBackgroundWork() const { return connectionAttemptUnderWay_ || writeUnderWay_ || offerToCome_; }

    /// A dialog or a file panel is over the page.
    bool isCovered();

    /// The dialogs whose flag is set, the Connect page's included, in the order in which to show them: one
    /// after the other, each until it is dismissed.
    std::vector<Dialog> raisedDialogs();

    /// Clears the dialog's flag. Comes before the action of the button that dismissed it.
    void dismiss(DialogId dialog);

  private:
    void startConnectionAttempt();
    /// A file that was loaded while the device's settings were being read must not come out mixed with them:
    /// once they are all there, its settings are put in place again.
    void applyLoadedSettings();

    Dispatch& dispatch_;
    FilePanel& filePanel_;
    std::function<void()> terminate_;
    /// Submitted, and its result not handed over yet. The model's `connectionState` shows either only some
    /// time after it was submitted.
    bool connectionAttemptUnderWay_ = false;
    bool writeUnderWay_ = false;
    /// The result of a write is there, or on its way, and the offer to save a file is not.
    bool offerToCome_ = false;
    bool savePanelIsOpen_ = false;
};

}  // namespace velmorindal
