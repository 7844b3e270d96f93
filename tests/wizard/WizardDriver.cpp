#include "WizardDriver.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTest>
#include <algorithm>
#include <stdexcept>

#include "MessageDialog.h"
#include "NavigationRow.h"

namespace velmorindal {
namespace {

constexpr int boundMilliseconds{std::chrono::milliseconds{WizardDriver::bound}.count()};

[[noreturn]] void fail(const std::string& what) {
    throw std::runtime_error{what};
}

std::string textOf(const QAbstractButton& button) {
    return button.text().toStdString();
}

/// The left to right order in which a person sees them.
template <typename Button>
std::vector<std::string> shownTexts(const QList<Button*>& buttons) {
    std::vector<Button*> shown;
    for (Button* button : buttons) {
        if (button->isVisible()) {
            shown.push_back(button);
        }
    }
    std::ranges::sort(shown, {}, [](const Button* button) { return button->mapToGlobal(QPoint{}).x(); });
    std::vector<std::string> texts;
    texts.reserve(shown.size());
    for (const Button* button : shown) {
        texts.push_back(textOf(*button));
    }
    return texts;
}

MessageDialog* shownMessage() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* const message = qobject_cast<MessageDialog*>(widget);
        if (message != nullptr && message->isVisible()) {
            return message;
        }
    }
    return nullptr;
}

template <typename Control>
Control& shownControl(const QWidget& top, const std::string& name) {
    for (Control* control : top.findChildren<Control*>()) {
        if (control->isVisible() && control->accessibleName().toStdString() == name) {
            return *control;
        }
    }
    fail("There is no \"" + name + "\".");
}

/// By keys, from the first step or entry on.
void moveTo(QWidget& control, int step, Qt::Key key) {
    control.setFocus();
    QTest::keyClick(&control, Qt::Key_Home);
    for (int done = 0; done < step; ++done) {
        QTest::keyClick(&control, key);
    }
    QApplication::processEvents();
}

}  // namespace

std::vector<std::string> navigationButtons(const QWidget& window) {
    return shownTexts(window.findChild<NavigationRow*>()->findChildren<QPushButton*>());
}

WizardDriver::WizardDriver(const std::filesystem::path& deviceDirectory) {
    open(deviceDirectory, dispatch_, system_);
}

WizardDriver::WizardDriver(const std::filesystem::path& deviceDirectory, Dispatch& dispatch, System& system) {
    open(deviceDirectory, dispatch, system);
}

void WizardDriver::open(const std::filesystem::path& deviceDirectory, Dispatch& dispatch, System& system) {
    wizard_ = std::make_unique<Wizard>(dispatch, system, DongleSearch{.directory = deviceDirectory.string()},
                                       QtFilePanel::Kind::toolkit, [this] { left_ = true; });
    wizard_->applicationDidFinishLaunching();
    if (!QTest::qWaitForWindowExposed(&wizard_->window(), boundMilliseconds)) {
        fail("The window did not appear.");
    }
}

WizardDriver::~WizardDriver() {
    shutDown(&waitUntil);
}

void WizardDriver::shutDown(const std::function<bool(const std::function<bool()>&)>& wait) {
    velmorindal().stopPollingAndWait();
    wait([this] { return !wizard_->container().hasBackgroundWork(); });
    velmorindal().disconnect(false);
}

bool WizardDriver::waitUntil(const std::function<bool()>& condition) {
    return QTest::qWaitFor(condition, boundMilliseconds);
}

QWidget& WizardDriver::top() const {
    QWidget* const modal = QApplication::activeModalWidget();
    return modal != nullptr ? *modal : wizard_->window();
}

template <typename Control>
Control& WizardDriver::reachable(const std::string& text) {
    Control* found = nullptr;
    const bool came = reaches([&] {
        for (Control* control : top().template findChildren<Control*>()) {
            if (control->isVisible() && control->isEnabled() && textOf(*control) == text) {
                found = control;
                return true;
            }
        }
        return false;
    });
    if (!came) {
        fail("\"" + text + "\" is not there to be pressed.");
    }
    return *found;
}

void WizardDriver::press(const std::string& button) {
    auto& control = reachable<QPushButton>(button);
    bool clicked = false;
    const auto connection = QObject::connect(&control, &QPushButton::clicked, [&clicked] { clicked = true; });
    QTest::mouseClick(&control, Qt::LeftButton);
    QObject::disconnect(connection);
    if (!clicked) {
        fail("\"" + button + "\" did not take the click.");
    }
    QApplication::processEvents();
}

void WizardDriver::choose(const std::string& choice) {
    auto& button = reachable<QRadioButton>(choice);
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint{button.height() / 2, button.height() / 2});
    QApplication::processEvents();
    if (!button.isChecked()) {
        fail("\"" + choice + "\" could not be chosen.");
    }
}

void WizardDriver::check(const std::string& box, bool checked) {
    auto& control = reachable<QCheckBox>(box);
    if (control.isChecked() != checked) {
        QTest::mouseClick(&control, Qt::LeftButton, {}, QPoint{control.height() / 2, control.height() / 2});
        QApplication::processEvents();
    }
    if (control.isChecked() != checked) {
        fail("\"" + box + "\" could not be changed.");
    }
}

void WizardDriver::chooseKey(const std::string& label, const std::string& key) const {
    auto& list = shownControl<QComboBox>(top(), label);
    const int row = list.findText(QString::fromStdString(key));
    if (row < 0) {
        fail("There is no \"" + key + "\" to choose.");
    }
    moveTo(list, row, Qt::Key_Down);
}

void WizardDriver::moveSlider(const std::string& name, int steps) const {
    moveTo(shownControl<QSlider>(top(), name), steps, Qt::Key_Up);
}

void WizardDriver::answerFileDialog(const std::optional<std::filesystem::path>& path) {
    QFileDialog* dialog = nullptr;
    if (!reaches([&] {
            dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            return dialog != nullptr;
        })) {
        fail("No file dialog appeared.");
    }
    if (!path) {
        QTest::keyClick(dialog, Qt::Key_Escape);
        return;
    }
    auto* const name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    name->setText(QString::fromStdString(path->string()));
    QTest::keyClick(name, Qt::Key_Return);
    QApplication::processEvents();
}

void WizardDriver::walkTo(wizardState page) {
    while (wizard_->container().currentState.get() != page) {
        press("Next");
    }
}

WizardDriver::ShownDialog WizardDriver::dialog() {
    if (!reaches([] { return shownMessage() != nullptr; })) {
        fail("No message appeared.");
    }
    const MessageDialog& message = *shownMessage();
    const auto labels = message.findChildren<QLabel*>();
    if (labels.size() != 2 || labels[0]->text() != message.windowTitle()) {
        fail("The message is not a heading and a text.");
    }
    return {.title = message.windowTitle().toStdString(),
            .message = labels[1]->text().toStdString(),
            .buttons = shownTexts(message.findChildren<QPushButton*>())};
}

bool WizardDriver::dialogIsShown() const {
    QApplication::processEvents();
    return shownMessage() != nullptr;
}

std::vector<std::string> WizardDriver::buttons() const {
    QApplication::processEvents();
    return navigationButtons(wizard_->window());
}

bool WizardDriver::shows(const std::string& text) const {
    QApplication::processEvents();
    const auto labels = wizard_->window().findChildren<QLabel*>();
    return std::ranges::any_of(labels, [&](const QLabel* label) {
        return label->isVisible() && label->text().toStdString() == text;
    });
}

}  // namespace velmorindal
