#include "ConnectPanelView.h"

#include "Print.h"
#include "Reason.h"

namespace velmorindal {

ConnectPanelView::ConnectPanelView(VelmorindalSwitch& model, FilePanel& filePanel,
                                   const ChangeNotifier& objectWillChange)
    : velmorindal{model},
      showingAlert{objectWillChange, false},
      alertTitle{objectWillChange, {}},
      alertMessage{objectWillChange, {}},
      filePanel_{filePanel},
      objectWillChange_{objectWillChange} {}

std::string_view ConnectPanelView::statusText() const {
    switch (velmorindal.connectionState.get()) {
        case ConnectionStatus::idle:
            return "Initializing...";
        case ConnectionStatus::connecting:
            return "Connecting...";
        case ConnectionStatus::connected:
            return "Connection successful. Press \"Next\" to continue.";
        case ConnectionStatus::disconnected:
            return "Not Connected";
        case ConnectionStatus::writing:
        case ConnectionStatus::error:
            break;
    }
    return "Unknown Error. Please quit and restart this program.";
}

std::optional<ProgressBar> ConnectPanelView::progressBar() const {
    if (velmorindal.connectionState.get() != ConnectionStatus::connecting) {
        return std::nullopt;
    }
    return ProgressBar{.value = velmorindal.readWriteProgress.get(),
                       .maxValue = 6.0,
                       .backgroundEnabled = true,
                       .backgroundColor = colors::veryLightGrey,
                       .foregroundColor = colors::green};
}

void ConnectPanelView::loadButtonPressed() {
    print("Load pressed");
    filePanelIsOpen_ = true;
    filePanel_.chooseFileToOpen({"xml"}, [this](const std::optional<std::string>& filename) {
        filePanelIsOpen_ = false;
        objectWillChange_.announce();
        if (!filename) {
            return;
        }
        if (const OperationResult result = velmorindal.loadXML(*filename)) {
            loadedSettings_ = velmorindal.chosenSettings();
            loadReason_.clear();
        } else {
            loadFailed(result.text);
        }
    });
}

void ConnectPanelView::loadFailed(const std::optional<std::string>& reason) {
    alertTitle = "Could Not Load XML File";
    alertMessage =
        reason.value_or("An unknown error occurred") + "\n\nSettings from the file were NOT loaded.";
    loadReason_ = asReason(alertMessage.get());
    showingAlert = true;
    print("Could not read XML: ", reason.value_or("Something weird happened"));
}

void ConnectPanelView::keepReason(std::string_view dialogText) {
    connectionReason_ = asReason(dialogText);
    loadReason_.clear();
}

void ConnectPanelView::forgetReasons() {
    connectionReason_.clear();
    loadReason_.clear();
}

std::optional<Dialog> ConnectPanelView::raisedDialog() const {
    if (!showingAlert.get()) {
        return std::nullopt;
    }
    return Dialog::notice(DialogId::loadError, alertTitle.get(), alertMessage.get());
}

}  // namespace velmorindal
