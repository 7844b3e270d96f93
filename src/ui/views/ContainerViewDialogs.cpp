#include "ContainerView.h"

#include <utility>

#include "Print.h"

namespace velmorindal {

void ContainerView::saveXMLButtonPressed() {
    savePanelIsOpen_ = true;
    filePanel_.chooseFileToSave({"xml"}, [this](const std::optional<std::string>& filename) {
        savePanelIsOpen_ = false;
        objectWillChange.announce();
        if (filename) {
            print("URL: ", *filename);
            velmorindal.writeXML(*filename);
        }
    });
}

bool ContainerView::isCovered() {
    return savePanelIsOpen_ || connectPanel.filePanelIsOpen() || !raisedDialogs().empty();
}

std::vector<Dialog> ContainerView::raisedDialogs() {
    std::vector<Dialog> dialogs;
    // Dialogs that the user asked for come first: one of them may be on the screen when a result arrives from
    // the background.
    if (showingClosingAlert.get()) {
        dialogs.push_back(
            Dialog::question(DialogId::closing, "Close Program?",
                             "No changes have been written to the device;\nany updates will be lost.\n\n"
                             "Are you sure you want to quit?",
                             terminate_));
    }
    if (showingSaveAlert.get()) {
        dialogs.push_back(Dialog::question(DialogId::save, "Save Settings?",
                                           "Would you like to program your device with these settings?",
                                           [this] { saveButtonPressed(); }));
    }
    if (auto loadError = connectPanel.raisedDialog()) {
        dialogs.push_back(std::move(*loadError));
    }
    if (showingGenericAlert.get()) {
        dialogs.push_back(Dialog::notice(DialogId::generic, alertTitle.get(), alertMessage.get()));
    }
    if (showingXMLSaveAlert.get()) {
        dialogs.push_back(Dialog::question(DialogId::xmlSave, "Write Configuration File?", xmlSaveBody.get(),
                                           [this] { saveXMLButtonPressed(); }));
    }
    return dialogs;
}

void ContainerView::dismiss(DialogId dialog) {
    switch (dialog) {
        case DialogId::closing:
            showingClosingAlert = false;
            break;
        case DialogId::save:
            showingSaveAlert = false;
            break;
        case DialogId::loadError:
            connectPanel.showingAlert = false;
            break;
        case DialogId::generic:
            showingGenericAlert = false;
            break;
        case DialogId::xmlSave:
            showingXMLSaveAlert = false;
            break;
    }
}

}  // namespace velmorindal
