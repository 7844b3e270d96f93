#pragma once

#include <QObject>
#include <functional>

namespace velmorindal {

/// Turns the signals by which a system asks a program to end (SIGTERM, SIGINT, SIGHUP) into a call on the
/// event loop, so that a write to the device is not cut off in the middle. A signal that is ignored stays
/// so. A process may have one at a time. Main thread only.
class QuitSignals final : public QObject {
    Q_OBJECT

  public:
    /// `quit` is called on the event loop for each signal, once for several that arrive together. If the
    /// system has no pipe left, the signals keep their default action, which ends the program at once.
    explicit QuitSignals(std::function<void()> quit);
    /// Gives the signals their default action back.
    ~QuitSignals() override;
};

}  // namespace velmorindal
