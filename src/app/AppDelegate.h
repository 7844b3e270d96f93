#pragma once

#include "Dispatch.h"
#include "DongleSearch.h"
#include "VelmorindalSwitch.h"

namespace velmorindal {

/// The part of the application without the toolkit: it owns the one model, and ends the program cleanly. Main
/// thread only.
class AppDelegate {
  public:
    /// `dispatch` and `system` must outlive the delegate.
    AppDelegate(Dispatch& dispatch, System& system, DongleSearch search = {});

    /// Shared by every view. Lives until the process ends.
    VelmorindalSwitch velmorindal;

    /// True: closing the window ends the program.
    static bool applicationShouldTerminateAfterLastWindowClosed();

    /// Shuts the device down: stops a calibration run, waits while a write is in progress, closes the port.
    /// Blocks until all that is done, and meanwhile runs pending main-queue work and nothing else. Safe
    /// to repeat.
    ///
    /// @returns true: termination proceeds at once.
    bool applicationShouldTerminate();

    /// Says goodbye on standard output.
    static void applicationWillTerminate();

  private:
    Dispatch& dispatch_;
};

}  // namespace velmorindal
