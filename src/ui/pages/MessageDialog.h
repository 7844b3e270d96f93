#pragma once

#include <QDialog>
#include <functional>

#include "Dialog.h"

namespace velmorindal {

class TextLabel;

/// A message over the window: heading, text, and the buttons in the order given. It is never larger than the
/// screen: first its lines get shorter, then the texts scroll.
///
/// The button that goes ahead is never the default. Escape and the close box press the button that declines,
/// or the only one.
class MessageDialog final : public QDialog {
    Q_OBJECT

  public:
    /// `pressed` is called once, with the button that ended the dialog, after the dialog is hidden.
    MessageDialog(Dialog described, std::function<void(const DialogButton&)> pressed, QWidget* parent);

    DialogId id() const { return described_.id; }

    /// Shows the texts of `described`, which must be the same dialog with other texts.
    void showTexts(const Dialog& described);

    /// Closes the dialog without calling `pressed`.
    void withdraw();

    void reject() override;

  private:
    void addButtons();
    void scrollTexts(int height);
    void end(const DialogButton& button);

    const Dialog described_;
    std::function<void(const DialogButton&)> pressed_;
    TextLabel* heading_;
    TextLabel* message_;
};

}  // namespace velmorindal
