#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "simulator/OwnedDescriptor.h"

namespace velmorindal {

/// Notices when the last host that had a port open has been gone for a while. Not safe from several threads.
///
/// Where the system refuses to watch (it has few watches to give), hosts are never noticed, and nothing else
/// changes.
class HostWatch {
  public:
    using Clock = std::chrono::steady_clock;
    /// Long enough for a host that closes the port only to open it again.
    static constexpr std::chrono::milliseconds absence{50};

    /// Watches who opens and closes the port at `path` from now on.
    explicit HostWatch(const std::string& path);

    /// Readable when somebody has opened or closed the port; -1 where nothing is watched.
    int descriptor() const { return watch_.get(); }
    /// Whether the last host has been gone for `absence`; says so once for each time.
    bool lastHostIsGone(Clock::time_point now);
    /// When it is worth asking again, if nobody opens the port meanwhile.
    std::optional<Clock::time_point> due() const;

  private:
    void takeEvents(Clock::time_point now);

    OwnedDescriptor watch_;
    int hosts_ = 0;
    std::optional<Clock::time_point> leftAt_;
};

}  // namespace velmorindal
