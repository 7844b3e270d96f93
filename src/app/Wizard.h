#pragma once

#include <functional>

#include "AppDelegate.h"
#include "ContainerView.h"
#include "Dispatch.h"
#include "DongleSearch.h"
#include "MainWindow.h"
#include "QtFilePanel.h"
#include "System.h"

namespace velmorindal {

/// The whole program except its main loop: joins the model, the container and the window.
///
/// Main thread only. Must not be destroyed while background work runs; the program itself never destroys it.
class Wizard {
  public:
    /// `dispatch` and `system` must outlive the wizard. `leave` ends the process; it returns only in tests.
    Wizard(Dispatch& dispatch, System& system, DongleSearch search, QtFilePanel::Kind filePanelKind,
           std::function<void()> leave);

    /// The application is ready for its main loop: puts the window on the screen, in front of others.
    void applicationDidFinishLaunching();

    /// The end of the program: hides the windows, saves the window's frame, shuts the device down, prints the
    /// last line and calls `leave`. Blocks until a calibration run or a write has ended. Does nothing when
    /// called again.
    void terminate();

    ContainerView& container() { return container_; }
    MainWindow& window() { return window_; }
    VelmorindalSwitch& velmorindal() { return delegate_.velmorindal; }

  private:
    static void hideWindows();

    std::function<void()> leave_;
    bool terminating_ = false;
    AppDelegate delegate_;
    QtFilePanel filePanel_;
    ContainerView container_;
    MainWindow window_;
};

}  // namespace velmorindal
