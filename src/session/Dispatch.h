#pragma once

#include <functional>

namespace velmorindal {

using Work = std::function<void()>;

/// The main queue and background threads, as the session uses them.
///
/// Main-queue work runs on the main thread, one piece at a time, in the order in which it was submitted.
class Dispatch {
  public:
    Dispatch() = default;
    Dispatch(const Dispatch&) = delete;
    Dispatch& operator=(const Dispatch&) = delete;
    virtual ~Dispatch() = default;

    /// Submits work to the main queue and returns at once. From any thread.
    virtual void postToMain(Work work) = 0;

    /// Submits work to the main queue and waits until it has run. Not from the main thread, which would wait
    /// for itself.
    virtual void runOnMainAndWait(Work work) = 0;

    /// Starts work on a background thread, soon, and returns at once. From any thread.
    virtual void runInBackground(Work work) = 0;

    /// Runs what has been submitted to the main queue so far, and nothing else: no user input, no repaint.
    /// Background work that has not started yet starts.
    /// Main thread only. Every wait on the main thread calls this between its checks.
    virtual void runPendingMainWork() = 0;
};

}  // namespace velmorindal
