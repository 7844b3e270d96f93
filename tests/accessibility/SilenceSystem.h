#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>

#include "Mutex.h"
#include "UnhurriedSystem.h"

namespace velmorindal {

/// The operating system with a clock that stands still but where the dongle leaves a frame unanswered: then
/// the wait for that answer ends at once, as if its time had passed. So no delay of the machine is taken for
/// a silent device.
///
/// The dongle adds a byte to a file for each such frame.
class SilenceSystem : public UnhurriedSystem {
  public:
    /// Silences that the file holds already are another program's.
    explicit SilenceSystem(std::filesystem::path file);

    Clock::time_point now() override;
    bool wait(int descriptor, Readiness readiness, std::optional<Clock::time_point> until) override;

  private:
    std::uintmax_t silences() const;

    const std::filesystem::path file_;
    Mutex mutex_;
    std::uintmax_t past_ GUARDED_BY(mutex_);
    Clock::time_point now_ GUARDED_BY(mutex_);
};

}  // namespace velmorindal
