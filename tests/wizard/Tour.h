#pragma once

#include <QSize>
#include <filesystem>
#include <functional>
#include <string>

#include "VirtualDongle.h"
#include "WizardDriver.h"

namespace velmorindal {

/// Walks through the real wizard as a clinician would, programs a simulated device and takes a picture of
/// every page and dialog on the way. Throws std::runtime_error when anything does not go as it should.
class Tour {
  public:
    /// Gives the window the shape of the tour.
    using Arrange = std::function<void(QWidget& window)>;

    /// Pictures go into `pictures`, dongles and settings files into `work`; both exist. Every window is
    /// arranged once, as a user does, and has to keep its size from then on.
    Tour(std::filesystem::path pictures, std::filesystem::path work, Arrange arrange);

    /// Connects, sets the device up, calibrates, programs it and saves the settings to a file.
    void programADevice();
    /// Loads that file in a second wizard and looks at what it shows.
    void loadTheSettingsAgain();
    /// What goes wrong most often: no dongle, a device that is switched off, a write that fails, a torn file.
    void meetTheFailures();

    /// How many pictures were taken.
    int pictureCount() const { return pictureCount_; }

  private:
    void arrange(WizardDriver& driver);
    void takePicture(WizardDriver& driver, const std::string& name);
    void calibrate(WizardDriver& driver, VirtualDongle& dongle);
    void expectSummary(WizardDriver& driver);

    const std::filesystem::path pictures_;
    const std::filesystem::path work_;
    const Arrange arrange_;
    QSize arrangedSize_;
    int pictureCount_ = 0;
};

}  // namespace velmorindal
