#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <thread>

#include "HostWatch.h"
#include "PseudoTerminal.h"
#include "SimulatedDongle.h"
#include "WakeUp.h"

namespace velmorindal {

/// A simulated dongle on a pseudo-terminal, which any program can open as a serial port. A separate thread
/// serves it.
///
/// When a host has closed the port, none has opened it again for 50 ms and none holds its lock (flock), the
/// exclusive mode (TIOCEXCL) ends and unread bytes are dropped, as on a real port.
class VirtualDongle final : public SimulatedDongle {
  public:
    /// Creates the pseudo-terminal and the link to it, and starts to serve.
    ///
    /// @throws std::system_error when the directory is missing, the name is in use or the system refuses;
    ///         nothing is left behind then.
    explicit VirtualDongle(const std::filesystem::path& directory, const Options& options = {});
    /// Unplugs. Must not run in the hook.
    ~VirtualDongle() override;

    /// Removes the link and closes the pseudo-terminal.
    void unplug() override;
    bool waitForFrames(std::size_t count, std::chrono::milliseconds timeout) const override;

  private:
    Clock::time_point now() const override { return Clock::now(); }
    void wake() override { wakeUp_.raise(); }
    void frameArrived() override { changed_.notifyAll(); }

    // On the server thread, in the order of a turn of its loop.
    void serve();
    void sendWhatIsDue(Clock::time_point now) REQUIRES(mutex_);
    void write(Clock::time_point now) REQUIRES(mutex_);
    void waitForWork() REQUIRES(mutex_);
    Clock::time_point nextDeadline(Clock::time_point now) const REQUIRES(mutex_);
    void receiveFromHost() REQUIRES(mutex_);

    const WakeUp wakeUp_;
    /// Notified when a frame was received or the dongle is unplugged.
    mutable Condition changed_;
    PseudoTerminal terminal_;
    HostWatch hosts_;
    /// The terminal had no room: the next write waits until it has some.
    bool blocked_ = false;
    std::thread::id serverId_ GUARDED_BY(mutex_);
    std::thread server_;  // last: it uses all of the above
};

}  // namespace velmorindal
