#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <limits>
#include <optional>

#include "Choices.h"
#include "ScheduledDispatch.h"
#include "Scheduler.h"
#include "VirtualSystem.h"
#include "WatchedWrites.h"

namespace velmorindal {

/// Threads that take turns, a clock that moves only when all of them wait, and terminals of their own. What
/// happens in here is the same on every machine at every load.
class VirtualWorld {
  public:
    VirtualWorld() = default;
    VirtualWorld(const VirtualWorld&) = delete;
    VirtualWorld& operator=(const VirtualWorld&) = delete;

    /// Ends the background threads where they stand, before what they use goes. Fails the test when the
    /// schedule has hung.
    void end() {
        scheduler.endOtherThreads();
        if (const auto failure = std::exchange(reported_, scheduler.failure()); !failure && reported_) {
            ADD_FAILURE() << *reported_ << "\n" << scheduler.trace();
        }
    }

    /// How much virtual time `operation` takes, in seconds.
    template <typename Operation>
    double secondsTakenBy(Operation operation) {
        const Scheduler::Moment start = scheduler.now();
        operation();
        return std::chrono::duration<double>{scheduler.now() - start}.count();
    }

    Choices choices;
    Scheduler scheduler{choices, {.deviations = 0, .points = std::numeric_limits<std::size_t>::max()}};
    WatchedWrites<VirtualSystem> system{scheduler};
    ScheduledDispatch dispatch{scheduler};

  private:
    std::optional<std::string> reported_;
};

}  // namespace velmorindal
