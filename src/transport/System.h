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

/// All that the serial port and the session ask of the operating system: a terminal's node and descriptor,
/// and the clock.
///
/// PosixSystem is the real one. Tests give another, in which a simulated device answers in the same process
/// and time passes only when somebody waits.
///
/// Calls that fail return -1, false or nothing and leave the reason in `errno`. All may be called from any
/// thread. None waits longer than it says.
class System {
  public:
    using Clock = std::chrono::steady_clock;
    enum class Readiness { toRead, toWrite };

    System() = default;
    System(const System&) = delete;
    System& operator=(const System&) = delete;
    virtual ~System() = default;

    virtual Clock::time_point now() = 0;
    virtual void sleepFor(Clock::duration duration) = 0;

    /// Opens a terminal so that nobody else can hold it at the same time, and stops its echo before anything
    /// else can happen on it. Never becomes the controlling terminal of the process.
    ///
    /// The system itself may hold this call for as long as another process is closing the port, half a minute
    /// at most; `whenSlow` is then called once, on another thread, after `slowOpen`.
    /// @param accessMode O_RDWR, O_RDONLY or O_WRONLY.
    /// @returns the descriptor, whose reads and writes never wait; or -1 when the system refuses or somebody
    ///          else holds the node (EBUSY): nothing is left open then.
    virtual int openExclusively(const std::string& path, int accessMode,
                                const std::function<void()>& whenSlow) = 0;
    static constexpr std::chrono::seconds slowOpen{4};

    /// Who has the node at `path` open; nothing where nobody does or the system does not show it.
    virtual std::optional<NodeHolder> holderOf(const std::string& path) = 0;

    /// Ends the exclusive use of a descriptor that stays open.
    virtual void endExclusiveUse(int descriptor) = 0;

    /// Closes a descriptor. Does not wait for output that the device has not taken: the system does that
    /// elsewhere, and the next open of the node waits until then, our own too.
    virtual void close(int descriptor) = 0;

    /// Takes up to `buffer.size()` bytes of what has arrived.
    /// @returns how many, 0 at the end of a file or a line that was hung up; -1 with EAGAIN when nothing is
    ///          there.
    virtual std::ptrdiff_t read(int descriptor, std::span<std::uint8_t> buffer) = 0;

    /// Hands over as many of `bytes` as there is room for.
    /// @returns how many; -1 with EAGAIN when there is no room.
    virtual std::ptrdiff_t write(int descriptor, std::span<const std::uint8_t> bytes) = 0;

    /// Waits until a read or write would do something, be it only to fail; without `until`, for as long as
    /// that takes.
    /// @returns false when that time came first.
    virtual bool wait(int descriptor, Readiness readiness, std::optional<Clock::time_point> until) = 0;

    /// How many names the file of a descriptor has: 0 once the device's node has vanished.
    virtual std::optional<std::size_t> linkCount(int descriptor) = 0;

    virtual bool lineAttributes(int descriptor, termios& attributes) = 0;
    virtual bool setLineAttributes(int descriptor, const termios& attributes) = 0;
};

}  // namespace velmorindal
