#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "OwnedDescriptor.h"

namespace velmorindal {

/// Detects that a host has closed a port and no host has opened it again for a while. Not safe from
/// several threads.
///
/// Another host may still have it open: the system reports several openings as one, so they cannot be
/// counted. If the system refuses the watch, since their number is limited, nothing is detected.
class HostWatch {
  public:
    using Clock = std::chrono::steady_clock;
    /// Longer than a host needs that closes the port and opens it again at once.
    static constexpr std::chrono::milliseconds absence{50};

    /// Watches the port at `path` from now on.
    explicit HostWatch(const std::string& path);

    /// Readable when a host has opened or closed the port; -1 if nothing is watched.
    int descriptor() const { return watch_.get(); }
    /// Whether the port was closed and not opened again for `absence`. True once for each time.
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
