#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "OwnedDescriptor.h"

namespace velmorindal {

/// Notices when a host has closed a port and no host has opened it again for a while. Not safe from several
/// threads.
///
/// Another host may still have it open: the system reports several openings as one, so they cannot be
/// counted. Where the system refuses to watch (it has few watches to give), nothing is ever noticed.
class HostWatch {
  public:
    using Clock = std::chrono::steady_clock;
    /// Long enough for a host that closes the port only to open it again.
    static constexpr std::chrono::milliseconds absence{50};

    /// Watches who opens and closes the port at `path` from now on.
    explicit HostWatch(const std::string& path);

    /// Readable when a host has opened or closed the port; -1 where nothing is watched.
    int descriptor() const { return watch_.get(); }
    /// Whether the port was closed and has been left alone for `absence`; says so once for each time.
    bool portWasLeft(Clock::time_point now);
    /// Whether a host has opened the port since the last call.
    bool portWasOpened(Clock::time_point now);
    /// When to ask again, if no host opens the port meanwhile.
    std::optional<Clock::time_point> due() const;

  private:
    void takeEvents(Clock::time_point now);

    OwnedDescriptor watch_;
    std::optional<Clock::time_point> leftAt_;
    bool opened_ = false;
};

}  // namespace velmorindal
