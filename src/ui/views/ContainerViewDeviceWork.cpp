#include "ContainerView.h"

#include "Print.h"

namespace velmorindal {

void ContainerView::startConnectionAttempt() {
    // The state is idle during the search for dongles: Back and Next must not start a second attempt.
    if (connectionAttemptUnderWay_) {
        return;
    }
    connectionAttemptUnderWay_ = true;
    connectPanel.forgetLoadedSettings();
    connectPanel.forgetReasons();
    dispatch_.runInBackground([this] {
        const OperationResult result = velmorindal.connect();
        dispatch_.postToMain([this, result] {
            connectionAttemptUnderWay_ = false;
            objectWillChange.announce();
            connectionAttemptEnded(result);
        });
    });
}

void ContainerView::connectionAttemptEnded(const OperationResult& result) {
    if (result) {
        applyLoadedSettings();
    }
    if (result && !result.text) {
        return;
    }
    alertTitle = result ? "Warning" : "Connection Failed";
    alertMessage = result.text.value_or("(Unknown Error)");
    connectPanel.keepReason(alertMessage.get());
    showingGenericAlert = true;
    print(result ? "Connected, with warnings." : "Could not connect.");
}

void ContainerView::applyLoadedSettings() {
    if (const auto& loaded = connectPanel.loadedSettings()) {
        velmorindal.choose(*loaded);
        connectPanel.forgetLoadedSettings();
    }
}

void ContainerView::saveButtonPressed() {
    if (writeUnderWay_ || offerToCome_) {
        return;
    }
    if (!velmorindal.cutoffFitsDevice()) {
        alertTitle = "Save Failed";
        alertMessage =
            "The cutoff between short and long hums is out of the device's range.\n\n"
            "Please move its slider on the Calibration page. Nothing has been written to the device.";
        summaryPanel.cutoffRefused(alertMessage.get());
        showingGenericAlert = true;
        return;
    }
    calibrationPanel.stop();
    print("dispatching background save");
    summaryPanel.forgetReason();
    writeUnderWay_ = true;
    offerToCome_ = true;
    objectWillChange.announce();
    dispatch_.runInBackground([this] {
        print("Starting save");
        const bool written = velmorindal.commitSettingsToDevice();
        print(written ? "Save done. pass." : "Save done. Fail.");
        dispatch_.runOnMainAndWait(
            [this, written, lastError = velmorindal.lastError.get()] { writeEnded(written, lastError); });
        if (written) {
            print("All done!");
        }
        dispatch_.postToMain([this] { offerSettingsFile(); });
    });
    print("background save dispatched");
}

void ContainerView::writeEnded(bool written, const std::optional<std::string>& lastError) {
    if (written) {
        xmlSaveBody =
            "Congratulations! Your Velmorindal has been successfully programmed.\n\n"
            "Your configuration can be saved to disk to save time next time.\n\n"
            "Would you like to save these settings to a file?";
        velmorindal.justSaved = true;
        if (lastError) {
            alertTitle = "Warning";
            alertMessage = *lastError;
            summaryPanel.writeEndedWith(*lastError);
            showingGenericAlert = true;
            print("Saved, with warnings.");
        }
    } else {
        xmlSaveBody =
            "There was an error writing your configuration to the device.\n\n"
            "Your configuration can be saved to disk in order to try again.\n\n"
            "Would you like to save these settings to a file?";
        alertTitle = "Save Failed";
        // "Unknwon" is misspelled on purpose.
        alertMessage = lastError.value_or("(Unknwon Error)") +
                       "\n\nPlease restart the Velmorindal in configuration mode and run this program again.";
        summaryPanel.writeEndedWith(alertMessage.get());
        connectPanel.keepReason(alertMessage.get());
        showingGenericAlert = true;
        print("Could not save.");
    }
    writeUnderWay_ = false;
}

void ContainerView::offerSettingsFile() {
    offerToCome_ = false;
    showingXMLSaveAlert = true;
}

}  // namespace velmorindal
