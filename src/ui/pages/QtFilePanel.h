#pragma once

#include <QPointer>
#include <QString>

#include "FilePanel.h"

class QFileDialog;
class QWidget;

namespace velmorindal {

/// Asks for a file with the desktop's file dialog, modal to the window.
class QtFilePanel final : public FilePanel {
  public:
    /// Which dialog asks: the desktop's own, or the toolkit's, which a test can reach.
    enum class Kind { native, toolkit };

    explicit QtFilePanel(Kind kind = Kind::native) : kind_{kind} {}

    /// The window that the dialog belongs to; it must be set before anything is asked.
    void setWindow(QWidget& window);

    void chooseFileToOpen(const std::vector<std::string>& allowedFileTypes, Completion completion) override;
    /// A name without one of the allowed extensions is given the first of them. Where there is a file of that
    /// name already, which the user was not asked about, the panel opens once more with the whole name.
    void chooseFileToSave(const std::vector<std::string>& allowedFileTypes, Completion completion) override;

  private:
    void askWhereToSave(const std::vector<std::string>& allowedFileTypes, Completion completion,
                        const QString& suggestion);
    QFileDialog& makeDialog(const QString& title, const std::vector<std::string>& allowedFileTypes);

    Kind kind_;
    QPointer<QWidget> window_;
};

}  // namespace velmorindal
