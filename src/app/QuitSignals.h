#pragma once

#include <QObject>
#include <functional>

namespace velmorindal {

/// Turns the signals by which a system asks a program to end (SIGTERM, SIGINT, SIGHUP) into a call on the
/// event loop, so that a write to the device is not cut off in the middle. One at a time in a process.
class QuitSignals final : public QObject {
    Q_OBJECT

  public:
    explicit QuitSignals(std::function<void()> quit);
    ~QuitSignals() override;
};

}  // namespace velmorindal
