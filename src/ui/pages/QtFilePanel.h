#pragma once

#include <QPointer>
#include <QString>

#include "FilePanel.h"

class QFileDialog;
class QWidget;

namespace velmorindal {

/// Asks for a file with the desktop's file dialog, modal to the window. Main thread only.
class QtFilePanel final : public FilePanel {
  public:
    /// The desktop's dialog, or that of the toolkit, which a test can operate.
    enum class Kind { native, toolkit };

    explicit QtFilePanel(Kind kind = Kind::native) : kind_{kind} {}

    /// Sets the parent of the dialogs. Call it before asking for a file.
    void setWindow(QWidget& window);

    void chooseFileToOpen(const std::vector<std::string>& allowedFileTypes, Completion completion) override;
    /// Adds the first allowed extension to a name without one of them. If a file with that name exists, the
    /// panel opens again with the whole name, so that the user is asked about replacing it.
    void chooseFileToSave(const std::vector<std::string>& allowedFileTypes, Completion completion) override;

  private:
    void askWhereToSave(const std::vector<std::string>& allowedFileTypes, Completion completion,
                        const QString& suggestion);
    QFileDialog& makeDialog(const QString& title, const std::vector<std::string>& allowedFileTypes);

    Kind kind_;
    QPointer<QWidget> window_;
};

}  // namespace velmorindal
