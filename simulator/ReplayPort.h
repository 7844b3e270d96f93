#pragma once

#include <atomic>
#include <filesystem>
#include <string>
#include <thread>

#include "HostWatch.h"
#include "PseudoTerminal.h"
#include "Replay.h"
#include "WakeUp.h"

namespace velmorindal {

/// One port of a record on a pseudo-terminal, which any program can open as a serial port. A separate thread
/// serves it.
///
/// When the record says that the dongle was unplugged, the port vanishes.
class ReplayPort {
  public:
    /// Creates the pseudo-terminal and the link to it, and starts to serve. Departures are reported on the
    /// serving thread.
    ///
    /// @throws std::system_error as VirtualDongle does.
    ReplayPort(std::filesystem::path link, std::vector<RecordedEvent> events, Replay::Report report);
    ReplayPort(const ReplayPort&) = delete;
    ReplayPort& operator=(const ReplayPort&) = delete;
    ~ReplayPort();

    /// The path that a host opens.
    const std::filesystem::path& path() const { return terminal_.link(); }

    /// Stops serving, removes the link and closes the pseudo-terminal. Safe to repeat. @returns the replay,
    /// which knows how far the host came.
    const Replay& finish();

  private:
    void serve();
    void turn(Replay::Clock::time_point now);
    void waitForWork(Replay::Clock::time_point now);

    const WakeUp wakeUp_;
    PseudoTerminal terminal_;
    HostWatch hosts_;
    Replay replay_;
    ByteBuffer unsent_;
    std::atomic<bool> ending_ = false;
    std::thread server_;  // last: it uses all of the above
};

}  // namespace velmorindal
