#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ChangeNotifier.h"
#include "ChosenSettings.h"
#include "Dialog.h"
#include "FilePanel.h"
#include "ProgressBar.h"
#include "Published.h"
#include "VelmorindalSwitch.h"

namespace velmorindal {

/// The second page: the progress and the result of the connection attempt, and a button to load a settings
/// file. It does not start the attempt. Main thread only.
class ConnectPanelView {
  public:
    /// `objectWillChange` announces the state of the page. All three must outlive it.
    ConnectPanelView(VelmorindalSwitch& model, FilePanel& filePanel, const ChangeNotifier& objectWillChange);

    VelmorindalSwitch& velmorindal;
    /// The load-error dialog is raised.
    Published<bool> showingAlert;
    Published<std::string> alertTitle;
    Published<std::string> alertMessage;

    /// In the larger font.
    static constexpr std::string_view title = "It's time to connect to the Velmorindal.";
    static constexpr std::string_view loadText =
        "If you have previously saved a configuration, you can load it here.\n"
        "These settings will not be saved to the Velmorindal until the end.";
    static constexpr std::string_view loadLabel = "Load";
    static constexpr std::string_view progressBarName = "Connection progress";

    /// The status line: the connection state in words.
    std::string_view statusText() const;

    /// The text of the last failure or warning, shown under the status line so that it can be read after its
    /// dialog. Empty if neither the last file nor the connection had one.
    const std::string& lastReason() const { return loadReason_.empty() ? connectionReason_ : loadReason_; }
    /// Sets the last reason from the text of a dialog about a failed attempt or write, or of a warning.
    void keepReason(std::string_view dialogText);
    /// Clears the last reason, for a new connection attempt.
    void forgetReasons();
    /// Whether the panel that asks for a file is open.
    bool filePanelIsOpen() const { return filePanelIsOpen_; }

    /// The bar under the status line; only while connecting.
    std::optional<ProgressBar> progressBar() const;

    /// Asks for a settings file and loads it into the model; raises the load-error dialog if that fails.
    /// Allowed in every connection state.
    void loadButtonPressed();

    /// Raises the load-error dialog. `reason` is the text from loadXML().
    void loadFailed(const std::optional<std::string>& reason);

    /// The settings from the file loaded last; nothing after forgetLoadedSettings().
    const std::optional<ChosenSettings>& loadedSettings() const { return loadedSettings_; }
    void forgetLoadedSettings() { loadedSettings_.reset(); }

    /// The load-error dialog while it is raised.
    std::optional<Dialog> raisedDialog() const;

  private:
    FilePanel& filePanel_;
    const ChangeNotifier& objectWillChange_;
    /// Empty if the connection has failed since.
    std::string loadReason_;
    std::string connectionReason_;
    bool filePanelIsOpen_ = false;
    std::optional<ChosenSettings> loadedSettings_;
};

}  // namespace velmorindal
