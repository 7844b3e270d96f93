#pragma once

#include <QPointer>
#include <QWidget>

#include "ContainerView.h"
#include "MessageDialog.h"

namespace velmorindal {

/// Shows the dialogs that the container has raised, one after the other in its order, modal to the window.
/// Main thread only.
class DialogPresenter {
  public:
    /// Both must outlive the presenter.
    DialogPresenter(ContainerView& view, QWidget& window);

    /// Opens, updates or closes a dialog, as the container's flags say now.
    void refresh();

  private:
    void open(const Dialog& dialog);

    ContainerView& view_;
    QWidget& window_;
    QPointer<MessageDialog> shown_;
};

}  // namespace velmorindal
