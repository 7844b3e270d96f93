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

/// A simulated dongle on a pseudo-terminal that any program can open as a serial port, served by a thread.
///
/// When a host has closed the port, none has opened it for 50 ms and none holds its lock (flock), the
/// exclusive mode (TIOCEXCL) ends and unread bytes are gone, as they would be on a real port.
class VirtualDongle final : public SimulatedDongle {
  public:
    /// Makes the pseudo-terminal and the link to it, and starts to serve.
    ///
    /// @throws std::system_error naming the path when the directory is missing, the name is taken or the
    ///         system refuses; nothing is left behind then.
    explicit VirtualDongle(const std::filesystem::path& directory, const Options& options = {});
    /// Unplugs. Not from the hook.
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
    /// A frame was received, or the dongle is out.
    mutable Condition changed_;
    PseudoTerminal terminal_;
    HostWatch hosts_;
    /// The system was full: it is worth writing again once the terminal can be written to.
    bool blocked_ = false;
    std::thread::id serverId_ GUARDED_BY(mutex_);
    std::thread server_;  // last: it uses all of the above
};

}  // namespace velmorindal
