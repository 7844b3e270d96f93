#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "schedules/Scheduler.h"
#include "simulator/PseudoTerminal.h"
#include "simulator/SimulatedDevice.h"
#include "simulator/WireFrame.h"

namespace velmorindal {

/// A port with a device behind it whose every exchange is a scheduling point. What is opened is a
/// pseudo-terminal; its reads and writes come here instead of to the system, for as long as this lives. One
/// at a time.
///
/// The device answers at once, or falls silent for one frame, or is pulled out, as the choices say.
class ScriptedPort {
  public:
    /// `troubles` is how often the device may do anything but answer.
    ScriptedPort(Scheduler& scheduler, const std::filesystem::path& directory, std::size_t troubles);
    ScriptedPort(const ScriptedPort&) = delete;
    ScriptedPort& operator=(const ScriptedPort&) = delete;
    /// Closes every descriptor of it that is still open.
    ~ScriptedPort();

    /// The port behind a descriptor; none for every other file.
    static ScriptedPort* of(int descriptor);

    const std::filesystem::path& path() const { return terminal_.link(); }
    const DeviceState& state() const { return device_.state(); }
    /// How many frames of a type with a payload, or of an order without one, were received.
    std::size_t timesReceived(VelmorindalMessageType type) const;
    bool hadTrouble() const { return hadTrouble_; }

    // What the system would do.

    ssize_t read(std::span<std::uint8_t> buffer);
    ssize_t write(std::span<const std::uint8_t> bytes);

  private:
    void usedBy(std::size_t thread);
    void receive(const ByteBuffer& frame);
    void unplug();
    bool isOpenAs(int descriptor) const;

    Scheduler& scheduler_;
    PseudoTerminal terminal_;
    dev_t node_ = 0;
    std::size_t troublesLeft_;
    bool hadTrouble_ = false;
    bool plugged_ = true;
    SimulatedDevice device_{DeviceState{}, std::nullopt};
    WireFrameReader reader_;
    std::vector<ByteBuffer> received_;
    /// On their way to the host, the first one without what was read of it.
    std::deque<ByteBuffer> answers_;
    bool withinAnswer_ = false;
    std::size_t user_ = 0;
    /// Threads whose operation is over, since another one has used the port after them.
    std::set<std::size_t> done_;
};

}  // namespace velmorindal
