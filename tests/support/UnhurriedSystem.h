#pragma once

#include <optional>

#include "PosixSystem.h"

namespace velmorindal {

/// The operating system with a clock that stands still: no deadline of an exchange ever passes, so a delay of
/// any thread is never taken for a device that does not answer. For devices that answer everything.
class UnhurriedSystem : public PosixSystem {
  public:
    Clock::time_point now() override { return {}; }

    /// A wait to read ends in real time, so that a reader notices a closed port. Room to write is waited for
    /// without end.
    bool wait(int descriptor, Readiness readiness, std::optional<Clock::time_point> until) override {
        if (readiness == Readiness::toWrite || !until) {
            return PosixSystem::wait(descriptor, readiness, std::nullopt);
        }
        return PosixSystem::wait(descriptor, readiness, Clock::now() + (*until - now()));
    }
};

}  // namespace velmorindal
