#pragma once

#include <functional>
#include <string>
#include <vector>

namespace velmorindal {

/// Every dialog of the wizard.
enum class DialogId { closing, save, loadError, generic, xmlSave };

/// What a button of a dialog does.
enum class DialogRole {
    destructive,  ///< goes ahead
    cancel,  ///< declines; what the Escape key and the dialog's close box mean where there is such a button
    acknowledge,  ///< the one button of a message
};

struct DialogButton {
    std::string label;
    DialogRole role = DialogRole::acknowledge;
    /// Call it on the main thread after the dialog is dismissed: it may raise the next dialog or end the
    /// program. Never empty.
    std::function<void()> action;
};

/// A message dialog, modal to the window, as data.
struct Dialog {
    DialogId id = DialogId::generic;
    std::string title;
    std::string message;
    std::vector<DialogButton> buttons;

    /// A question: "Yes" calls `whenYes`, "No" does nothing.
    static Dialog question(DialogId id, std::string title, std::string message,
                           std::function<void()> whenYes);

    /// A message with one button, "OK".
    static Dialog notice(DialogId id, std::string title, std::string message);
};

}  // namespace velmorindal
