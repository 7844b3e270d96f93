#pragma once

#include <functional>
#include <string>
#include <vector>

namespace velmorindal {

/// Every dialog of the wizard.
enum class DialogId { closing, save, loadError, generic, xmlSave };

enum class DialogRole {
    destructive,  ///< goes ahead
    cancel,  ///< declines; what the Escape key and the dialog's close box mean where there is such a button
    acknowledge,  ///< the one button of a message
};

struct DialogButton {
    std::string label;
    DialogRole role = DialogRole::acknowledge;
    /// What pressing it does beyond dismissing the dialog. Always callable; main thread. Dismiss first: the
    /// action may raise the next dialog or end the program.
    std::function<void()> action;
};

/// A message dialog, modal to the window.
struct Dialog {
    DialogId id = DialogId::generic;
    std::string title;
    std::string message;
    std::vector<DialogButton> buttons;

    /// A dialog that asks: "Yes" does `whenYes`, "No" nothing.
    static Dialog question(DialogId id, std::string title, std::string message,
                           std::function<void()> whenYes);

    /// A notice with the one button "OK".
    static Dialog notice(DialogId id, std::string title, std::string message);
};

}  // namespace velmorindal
