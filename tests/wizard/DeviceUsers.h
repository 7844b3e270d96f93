#pragma once

#include <atomic>
#include <cstddef>
#include <memory>

#include "PosixSystem.h"
#include "WatchedWrites.h"

namespace velmorindal {

/// Looks at which threads send frames: every operation has its own thread, and once another has replaced it,
/// it must never send again.
///
/// One at a time for a system.
class DeviceUsers {
  public:
    explicit DeviceUsers(WatchedWrites<PosixSystem>& system);

    /// Whether two operations ever used a device in turns.
    bool tookTurns() const { return seen_->tookTurns; }

  private:
    /// Shared with a frame that is on its way out.
    struct Seen {
        std::atomic<std::size_t> latest{0};
        std::atomic<bool> tookTurns{false};
    };

    std::shared_ptr<Seen> seen_ = std::make_shared<Seen>();
};

}  // namespace velmorindal
