#pragma once

#include <QEvent>
#include <QObject>
#include <QTimer>
#include <deque>

#include "Dispatch.h"
#include "Mutex.h"

namespace velmorindal {

/// The main queue on the event loop of the thread that creates this object, which is the main thread.
///
/// Background work starts when a refresh of the windows that is due has been painted: both would take the
/// main thread, and a slow computer's processor, from an exchange with the device. It runs on threads that
/// are never joined: a run that is still inside an exchange must not delay the end of the program. When the
/// system can start no thread, a line on standard error says so and the work waits until it can.
class QtDispatch final : public QObject, public Dispatch {
    Q_OBJECT

  public:
    QtDispatch();

    void postToMain(Work work) override;
    void runOnMainAndWait(Work work) override;
    void runInBackground(Work work) override;
    void runPendingMainWork() override;

  protected:
    bool event(QEvent* event) override;

  private:
    void postAfterRefresh(QEvent::Type type);
    void startBackgroundWork();
    void runQueue();
    /// The next piece of work, or none.
    Work takeNext();

    Mutex mutex_;
    std::deque<Work> queue_ GUARDED_BY(mutex_);
    /// Background work that has not been started yet.
    std::deque<Work> toStart_ GUARDED_BY(mutex_);
    /// An event that will run the queue has been posted.
    bool woken_ GUARDED_BY(mutex_) = false;
    /// Runs while work waits for a thread. Main thread only.
    QTimer untilNextTry_;
};

}  // namespace velmorindal
