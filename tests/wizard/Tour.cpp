#include "Tour.h"

#include <QApplication>
#include <QPixmap>
#include <algorithm>
#include <cmath>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <utility>

#include "Guarded.h"
#include "Print.h"
#include "ProgressBarWidget.h"
#include "ToQt.h"

namespace velmorindal {
namespace {

using Type = VelmorindalMessageType;

void expect(bool holds, const std::string& what) {
    if (!holds) {
        throw std::runtime_error{"The tour failed: " + what};
    }
}

void waitFor(const std::function<bool()>& condition, const std::string& what) {
    expect(WizardDriver::waitUntil(condition), what);
}

/// The bars on the screen, after all that is due has been shown.
QList<ProgressBarWidget*> shownBars(WizardDriver& driver) {
    QApplication::processEvents();
    auto bars = driver.wizard().window().findChildren<ProgressBarWidget*>();
    bars.removeIf([](const ProgressBarWidget* bar) { return !bar->isVisible(); });
    return bars;
}

void waitForBarsAtRest(WizardDriver& driver) {
    waitFor(
        [&] {
            return std::ranges::all_of(shownBars(driver), [](const ProgressBarWidget* bar) {
                return bar->shownFraction() == bar->targetFraction();
            });
        },
        "bars that have glided to their values");
}

/// While one exists, the answer to the next frame of a type is held back.
class HeldAnswer {
  public:
    HeldAnswer(VirtualDongle& dongle, Type type) : dongle_{dongle} {
        dongle.onNext(type, Fault{"held", [answer = answer_](AnswerPlan& plan) {
                                      *answer = plan.answer;
                                      plan.delivery = AnswerPlan::Delivery::never;
                                  }});
    }
    HeldAnswer(const HeldAnswer&) = delete;
    HeldAnswer& operator=(const HeldAnswer&) = delete;
    ~HeldAnswer() { dongle_.send(answer_->get()); }

    void waitUntilDue() const {
        waitFor([this] { return !answer_->get().empty(); }, "the frame whose answer is held back");
    }

  private:
    VirtualDongle& dongle_;
    /// Shared with the dongle, which keeps the fault.
    const std::shared_ptr<Guarded<ByteBuffer>> answer_ = std::make_shared<Guarded<ByteBuffer>>();
};

constexpr const char* settingsFile = "settings of a wearer.xml";

}  // namespace

Tour::Tour(std::filesystem::path pictures, std::filesystem::path work, Arrange arrange)
    : pictures_{std::move(pictures)}, work_{std::move(work)}, arrange_{std::move(arrange)} {}

void Tour::arrange(WizardDriver& driver) {
    QWidget& window = driver.wizard().window();
    arrange_(window);
    QApplication::processEvents();
    arrangedSize_ = window.size();
}

void Tour::takePicture(WizardDriver& driver, const std::string& name) {
    QApplication::processEvents();
    expect(driver.wizard().window().size() == arrangedSize_, "a window that keeps its size");
    const auto path = pictures_ / (name + ".png");
    expect(driver.top().grab().save(QString::fromStdString(path.string())), "saving " + path.string());
    ++pictureCount_;
}

void Tour::programADevice() {
    VirtualDongle dongle{work_, {.hums = true}};
    WizardDriver driver{work_};
    arrange(driver);
    takePicture(driver, "01-welcome");

    {
        const HeldAnswer thresholds{dongle, Type::humThresholds};
        driver.press("Next");
        thresholds.waitUntilDue();
        waitForBarsAtRest(driver);
        takePicture(driver, "02-connecting");
    }
    waitFor([&] { return driver.shows("Connection successful. Press \"Next\" to continue."); }, "connecting");
    takePicture(driver, "03-connected");

    driver.press("Next");
    driver.choose("Direct Mode");
    takePicture(driver, "04-mode-direct");
    driver.choose("Long/Short Mode");
    driver.check("Enable short output", true);
    driver.check("Enable long output", true);
    takePicture(driver, "05-mode-long-short");

    driver.press("Next");
    driver.choose("Switch Output");
    takePicture(driver, "06-output-switch");
    driver.choose("USB Keyboard");
    driver.chooseKey("Short hum keystroke", "Tab");
    driver.chooseKey("Long hum keystroke", "Shift+Tab");
    takePicture(driver, "07-output-keyboard");

    driver.press("Next");
    driver.moveSlider("Clarity threshold", 55);
    driver.moveSlider("Cutoff", 18);
    takePicture(driver, "08-calibration");
    calibrate(driver, dongle);

    driver.press("Next");
    takePicture(driver, "11-summary");
    expectSummary(driver);
    driver.press("Cancel");
    driver.dialog();
    takePicture(driver, "12-close-program");
    driver.press("No");
    driver.press("Save");
    driver.dialog();
    takePicture(driver, "13-save-settings");
    {
        const HeldAnswer keys{dongle, Type::keyboardConfig};
        driver.press("Yes");
        keys.waitUntilDue();
        waitForBarsAtRest(driver);
        takePicture(driver, "14-writing");
    }
    expect(driver.dialog().title == "Write Configuration File?", "the offer of a settings file");
    takePicture(driver, "15-write-configuration-file");
    driver.press("Yes");
    driver.answerFileDialog(work_ / settingsFile);
    expect(std::filesystem::exists(work_ / settingsFile), "saving the settings file");
    takePicture(driver, "16-saved");
    for (const std::string& line : storedSettingsInWords(dongle.state())) {
        print(line);
    }
    DeviceSettings expected;
    expected.outputPath = 0;
    expected.humDuration = {
        .detectMode = 3, .minShort = 0, .maxShort = 25, .minLong = 25, .maxLong = 0xFFFF, .holdOn = 4};
    expected.thresholds = {.ap = 0.55F, .si = 0.55F};
    expected.keys = {0, 0x2B, 0, 0, 0x02, 0x2B, 0, 0};
    expect(dongle.state().stored == expected, "what the device has stored");
    driver.press("Close");
    expect(driver.hasLeft(), "closing");
}

void Tour::calibrate(WizardDriver& driver, VirtualDongle& dongle) {
    driver.press("Show Clarity");
    const auto showsAClearHum = [](const ProgressBarWidget* bar) {
        return bar->accessibleName() == toQString(CalibrationPanelView::clarityBarName) &&
               bar->shownFraction() > 0.55 && std::abs(bar->shownFraction() - bar->targetFraction()) < 0.1;
    };
    waitFor([&] { return std::ranges::any_of(shownBars(driver), showsAClearHum); }, "a clear hum");
    takePicture(driver, "09-calibration-clarity");
    expect(driver.buttons().empty(), "no navigation while a reading is shown");
    driver.press("Show Clarity");
    waitFor([&] { return !driver.buttons().empty(); }, "the end of the clarity display");
    driver.press("Show Duration");
    waitFor([&] { return driver.velmorindal().pollingState.get() == PollingState::duration; },
            "duration polling");
    waitFor([&] { return dongle.timesReceived(Type::lastHumDuration) > 2; }, "asking for the last hum");
    dongle.humOnce(40);
    waitFor([&] { return driver.wizard().container().calibrationPanel.lastHum() > 0.0; }, "the last hum");
    waitForBarsAtRest(driver);
    takePicture(driver, "10-calibration-duration");
    driver.press("Show Duration");
    waitFor([&] { return !driver.buttons().empty(); }, "the end of the duration display");
}

void Tour::expectSummary(WizardDriver& driver) {
    for (const char* text : {"Long/short mode", "Short output: ENABLED; Long output: ENABLED", "USB Keyboard",
                             "Short: Space; Long: Enter", "1.00s", "0.55"}) {
        expect(driver.shows(text), std::string{"the summary shows "} + text);
    }
}

void Tour::loadTheSettingsAgain() {
    const VirtualDongle dongle{work_};
    WizardDriver driver{work_};
    arrange(driver);
    driver.walkTo(wizardState::Connect);
    waitFor([&] { return driver.shows("Connection successful. Press \"Next\" to continue."); },
            "connecting again");
    driver.press("Load");
    driver.answerFileDialog(work_ / settingsFile);
    driver.walkTo(wizardState::Output);
    takePicture(driver, "20-loaded-output");
    driver.walkTo(wizardState::Summary);
    expectSummary(driver);
    takePicture(driver, "21-loaded-summary");
}

void Tour::meetTheFailures() {
    {
        WizardDriver driver{work_};
        arrange(driver);
        driver.press("Next");
        driver.dialog();
        takePicture(driver, "30-no-dongle");
        driver.press("OK");
        takePicture(driver, "31-unknown-error");
    }
    {
        const VirtualDongle dongle{work_, {.device = {.linkState = 0}}};
        WizardDriver driver{work_};
        arrange(driver);
        driver.press("Next");
        driver.dialog();
        takePicture(driver, "32-link-down");
        driver.press("OK");
        takePicture(driver, "33-not-connected");
    }
    VirtualDongle dongle{work_};
    WizardDriver driver{work_};
    arrange(driver);
    driver.press("Next");
    std::ofstream{work_ / "torn.xml"} << "<VibrationSwitch OutputPath=\"Sw";
    driver.press("Load");
    driver.answerFileDialog(work_ / "torn.xml");
    driver.dialog();
    takePicture(driver, "34-torn-file");
    driver.press("OK");
    driver.walkTo(wizardState::Summary);
    dongle.onNext(Type::relayConfig, Fault::unplugBeforeAnswer());
    driver.press("Save");
    driver.press("Yes");
    driver.dialog();
    takePicture(driver, "35-save-failed");
    driver.press("OK");
    driver.dialog();
    takePicture(driver, "36-file-after-failure");
    driver.press("No");
}

}  // namespace velmorindal
