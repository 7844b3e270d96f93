#pragma once

#include <termios.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "NodeHolder.h"

namespace velmorindal {

/// All that the serial port and the session need of the operating system: a terminal's node and descriptor,
/// and the clock.
///
/// PosixSystem is the real one. In tests, a simulated device answers in the same process, and time passes
/// only while a thread waits.
///
/// Calls that fail return -1, false or nothing, with the reason in `errno`. All are safe from any thread.
/// None waits longer than it says.
class System {
  public:
    using Clock = std::chrono::steady_clock;
    enum class Readiness { toRead, toWrite };

    System() = default;
    System(const System&) = delete;
    System& operator=(const System&) = delete;
    virtual ~System() = default;

    /// The time of a clock that never goes back.
    virtual Clock::time_point now() = 0;
    /// Blocks the calling thread for at least `duration`.
    virtual void sleepFor(Clock::duration duration) = 0;

    /// Opens a terminal so that no other process can hold it at the same time, and stops its echo first. The
    /// terminal does not become the controlling terminal of the process.
    ///
    /// The call may block while another process is closing the port, half a minute at most. In that case
    /// `whenSlow` is called once, on another thread, after `slowOpen`.
    /// @param accessMode O_RDWR, O_RDONLY or O_WRONLY.
    /// @returns the descriptor, whose reads and writes never wait; or -1, with nothing left open, when the
    ///          system refuses or another process holds the node (EBUSY).
    virtual int openExclusively(const std::string& path, int accessMode,
                                const std::function<void()>& whenSlow) = 0;
    static constexpr std::chrono::seconds slowOpen{4};

    /// The process that has the node at `path` open; nothing if there is none or the system does not show it.
    virtual std::optional<NodeHolder> holderOf(const std::string& path) = 0;

    /// Ends the exclusive use of a descriptor that stays open.
    virtual void endExclusiveUse(int descriptor) = 0;

    /// Closes a descriptor. Does not wait for output that the device has not taken. The system waits for it
    /// in the background, and until then every open of the node blocks, our own too.
    virtual void close(int descriptor) = 0;

    /// Takes up to `buffer.size()` bytes of what has arrived.
    /// @returns how many, 0 at the end of a file or after a hang-up; -1 with EAGAIN when there is nothing.
    virtual std::ptrdiff_t read(int descriptor, std::span<std::uint8_t> buffer) = 0;

    /// Hands over as many of `bytes` as there is room for.
    /// @returns how many; -1 with EAGAIN when there is no room.
    virtual std::ptrdiff_t write(int descriptor, std::span<const std::uint8_t> bytes) = 0;

    /// Waits until a read or write would transfer something or fail; without `until`, with no deadline.
    /// @returns false when `until` came first.
    virtual bool wait(int descriptor, Readiness readiness, std::optional<Clock::time_point> until) = 0;

    /// How many links the file of a descriptor has: 0 once the device's node has vanished.
    virtual std::optional<std::size_t> linkCount(int descriptor) = 0;

    /// Reads or sets, at once, the attributes of a terminal. @returns false when it fails.
    virtual bool lineAttributes(int descriptor, termios& attributes) = 0;
    virtual bool setLineAttributes(int descriptor, const termios& attributes) = 0;
};

}  // namespace velmorindal
