#include "Wizard.h"

#include <QApplication>
#include <utility>

#include "Print.h"

namespace velmorindal {

Wizard::Wizard(Dispatch& dispatch, System& system, DongleSearch search, QtFilePanel::Kind filePanelKind,
               std::function<void()> leave)
    : leave_{std::move(leave)},
      delegate_{dispatch, system, std::move(search)},
      filePanel_{filePanelKind},
      container_{delegate_.velmorindal, dispatch, filePanel_, [this] { terminate(); }},
      window_{container_, [this] { terminate(); }} {
    filePanel_.setWindow(window_);
}

void Wizard::applicationDidFinishLaunching() {
    window_.show();
    window_.raise();
    window_.activateWindow();
}

void Wizard::terminate() {
    if (std::exchange(terminating_, true)) {
        return;
    }
    const QByteArray frame = window_.saveGeometry();
    hideWindows();
    // After hiding the windows: writing to the disk may be slow.
    MainWindow::rememberFrame(frame);
    delegate_.applicationShouldTerminate();
    // A background thread may be about to print its next line.
    const PrintLock printLock;
    AppDelegate::applicationWillTerminate();
    leave_();
}

void Wizard::hideWindows() {
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        widget->hide();
    }
}

}  // namespace velmorindal
