#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <filesystem>

#include "SimulatedDongle.h"
#include "VirtualSystem.h"

namespace velmorindal {

/// A simulated dongle on a line of a virtual system: it answers in the same process and in virtual time, at
/// the speed of its line. Its name stands in a real directory, where a search finds it.
class InProcessDongle final : public SimulatedDongle, private VirtualLine {
  public:
    /// @throws std::system_error when the directory is missing or the name is taken.
    InProcessDongle(VirtualSystem& system, const std::filesystem::path& directory,
                    const Options& options = {});
    /// Unplugs.
    ~InProcessDongle() override;

    void unplug() override;
    /// `timeout` is virtual.
    bool waitForFrames(std::size_t count, std::chrono::milliseconds timeout) const override;

    /// How many bytes the host has read so far.
    std::size_t bytesRead() const;

  private:
    Clock::time_point now() const override { return system_.now(); }

    std::ptrdiff_t read(std::span<std::uint8_t> buffer, Clock::time_point now) override;
    std::ptrdiff_t write(std::span<const std::uint8_t> bytes, Clock::time_point now) override;
    bool isReady(System::Readiness readiness, Clock::time_point now) override;
    std::optional<Clock::time_point> due() override;
    bool isPresent() const override { return isPlugged(); }
    void closed() override;

    void advance(Clock::time_point now) REQUIRES(mutex_);
    void unplugIfAsked() REQUIRES(mutex_);

    VirtualSystem& system_;
    /// What the line has carried and the host has not read.
    std::deque<std::uint8_t> arrived_ GUARDED_BY(mutex_);
    std::size_t bytesRead_ GUARDED_BY(mutex_) = 0;
};

}  // namespace velmorindal
