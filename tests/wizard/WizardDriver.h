#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "QtDispatch.h"
#include "UnhurriedSystem.h"
#include "Wizard.h"

class QWidget;

namespace velmorindal {

/// The texts of the navigation buttons that are shown, left to right.
std::vector<std::string> navigationButtons(const QWidget& window);

/// Drives the real wizard, in this process, as a person does: presses what is shown, reads what is there.
///
/// Everything waits for what it needs, five minutes at most, and throws std::runtime_error when it does not
/// come: a press of a button that is not shown, not enabled or behind a dialog does not happen.
class WizardDriver {
  public:
    struct ShownDialog {
        std::string title;
        std::string message;
        std::vector<std::string> buttons;

        bool operator==(const ShownDialog&) const = default;
    };

    static constexpr std::chrono::minutes bound{5};

    /// Opens the window; dongles are looked for in `deviceDirectory`. For dongles that answer everything: no
    /// exchange ever times out.
    explicit WizardDriver(const std::filesystem::path& deviceDirectory);
    WizardDriver(const WizardDriver&) = delete;
    WizardDriver& operator=(const WizardDriver&) = delete;
    /// Waits for background work to end.
    virtual ~WizardDriver();

    Wizard& wizard() { return *wizard_; }
    VelmorindalSwitch& velmorindal() { return wizard_->velmorindal(); }

    /// Turns the event loop until `condition` holds. @returns false when the bound passed first.
    static bool waitUntil(const std::function<bool()>& condition);

    /// Lets the wizard and its device go on until `condition` holds. @returns false when the bound passed
    /// first.
    virtual bool reaches(const std::function<bool()>& condition) { return waitUntil(condition); }

    /// Presses the button with that text in the dialog on top, or in the window where there is none.
    void press(const std::string& button);
    /// Chooses a radio button.
    void choose(const std::string& choice);
    /// Sets or clears a check box.
    void check(const std::string& box, bool checked);
    /// Chooses a key from the list beside `label`.
    void chooseKey(const std::string& label, const std::string& key) const;
    /// Moves the slider of that accessible name to the left end and then `steps` steps to the right, by keys.
    void moveSlider(const std::string& name, int steps) const;
    /// Waits for the file dialog and accepts it with `path`; without one, dismisses it.
    void answerFileDialog(const std::optional<std::filesystem::path>& path);

    /// From the first page to one of the others; connects on the way and answers nothing.
    void walkTo(wizardState page);

    /// Waits for a message and reads it.
    ShownDialog dialog();
    bool dialogIsShown() const;
    /// The texts of the navigation buttons shown, left to right.
    std::vector<std::string> buttons() const;
    /// Whether a text is on the page, in a label of its own.
    bool shows(const std::string& text) const;
    /// Whether terminate() has run to its end.
    bool hasLeft() const { return left_; }

    /// The window or dialog that takes the next press.
    QWidget& top() const;

  protected:
    /// As the public one, with a dispatch and a system that outlive the driver.
    WizardDriver(const std::filesystem::path& deviceDirectory, Dispatch& dispatch, System& system);

    /// What the destructor does, with another wait.
    void shutDown(const std::function<bool(const std::function<bool()>&)>& wait);

  private:
    void open(const std::filesystem::path& deviceDirectory, Dispatch& dispatch, System& system);

    template <typename Control>
    Control& reachable(const std::string& text);

    bool left_ = false;
    UnhurriedSystem system_;
    QtDispatch dispatch_;
    std::unique_ptr<Wizard> wizard_;
};

}  // namespace velmorindal
