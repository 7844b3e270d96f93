#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "Scheduler.h"
#include "SimulatedDevice.h"
#include "System.h"
#include "WireFrame.h"

namespace velmorindal {

/// A system with one port, a device behind it, and every exchange and sleep a scheduling point.
///
/// The device answers at once, or falls silent for one frame, or is pulled out, as the choices say.
class ExploredSystem final : public System {
  public:
    /// The port's node stands in `directory`. `troubles` is how often the device may do anything but answer.
    ExploredSystem(Scheduler& scheduler, const std::filesystem::path& directory, std::size_t troubles);
    ~ExploredSystem() override;

    const std::filesystem::path& path() const { return path_; }
    const DeviceState& state() const { return device_.state(); }
    /// How many frames of a type with a payload, or of an order without one, were received.
    std::size_t timesReceived(VelmorindalMessageType type) const;
    bool hadTrouble() const { return hadTrouble_; }

    Clock::time_point now() override;
    void sleepFor(Clock::duration duration) override;
    int openExclusively(const std::string& path, int accessMode,
                        const std::function<void()>& whenSlow) override;
    std::optional<NodeHolder> holderOf(const std::string& /*path*/) override { return std::nullopt; }
    void endExclusiveUse(int descriptor) override;
    void close(int descriptor) override;
    std::ptrdiff_t read(int descriptor, std::span<std::uint8_t> buffer) override;
    std::ptrdiff_t write(int descriptor, std::span<const std::uint8_t> bytes) override;
    bool wait(int descriptor, Readiness readiness, std::optional<Clock::time_point> until) override;
    std::optional<std::size_t> linkCount(int descriptor) override;
    bool lineAttributes(int descriptor, termios& attributes) override;
    bool setLineAttributes(int descriptor, const termios& attributes) override;

  private:
    void usedBy(std::size_t thread);
    void receive(const ByteBuffer& frame);
    void unplug();

    Scheduler& scheduler_;
    const std::filesystem::path path_;
    std::size_t troublesLeft_;
    bool hadTrouble_ = false;
    bool plugged_ = true;
    SimulatedDevice device_{DeviceState{}, std::nullopt};
    WireFrameReader reader_;
    std::vector<ByteBuffer> received_;
    /// On their way to the host, the first one without what was read of it.
    std::deque<ByteBuffer> answers_;
    /// The host has waited for the first answer, or has read a part of it.
    bool answerIsThere_ = false;
    std::set<int> open_;
    int nextDescriptor_ = 100;
    std::size_t user_ = 0;
    /// Threads whose operation is over, since another one has used the port after them.
    std::set<std::size_t> done_;
};

}  // namespace velmorindal
