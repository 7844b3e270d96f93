#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "ByteBuffer.h"
#include "Mutex.h"
#include "PortError.h"
#include "SerialSettings.h"
#include "System.h"

namespace velmorindal {

/// A serial device node: opened exclusively, configured through termios, read and written as raw bytes.
///
/// Every operation blocks its caller, and none for longer than it says, whatever other programs do with the
/// line meanwhile. One thread at a time reads, writes, opens and configures; closePort() and fileDescriptor()
/// alone may be called from any thread at any moment, so that a port can be closed under a reader. Dropping
/// the object does not close the descriptor: call closePort() for that.
class SerialPort {
  public:
    /// `system` must outlive the port.
    SerialPort(std::string devicePath, System& system);
    SerialPort(const SerialPort&) = delete;
    SerialPort& operator=(const SerialPort&) = delete;
    ~SerialPort();

    const std::string path;

    /// The descriptor; absent while closed, -1 after an open that failed.
    std::optional<int> fileDescriptor() const;

    /// The deadline of readData in whole seconds, 0 for none, as setSettings left it.
    int timeout() const;

    /// Opens for both directions.
    void openPort();

    /// Opens `path` exclusively: a node that another process holds is refused. From here on the line echoes
    /// nothing.
    ///
    /// @param whenSlow called once, on another thread, when the system holds the call for long: another
    ///        process is still closing the port.
    /// @throws PortException invalidPath, then mustReceiveOrTransmit, both before the file system is touched;
    ///         failedToOpen with the system's reason, after which fileDescriptor() is -1, reads throw
    ///         deviceNotConnected and writes return -1.
    void openPort(bool toReceive, bool andTransmit, const std::function<void()>& whenSlow = {});

    /// Configures the line. Does nothing while closed. What the system refuses is not reported.
    ///
    /// Parity bits that are already set stay set. `minimumBytesToRead` or `timeout` outside 0..255 stops the
    /// process.
    void setSettings(const SerialSettings& settings);

    /// Puts the line back to what setSettings() made of it, if another program has changed it since.
    void renewSettings();

    /// Closes the descriptor, if there is one, and makes it absent. Safe to repeat; never waits: a read or
    /// write that is still inside the system keeps the descriptor alive until it returns, and output that the
    /// device does not take is waited for elsewhere.
    void closePort();

    /// One read of up to `buffer.size()` bytes, after waiting for the first as VMIN and VTIME of the settings
    /// say: with `minimumBytesToRead` 0 for `timeout` tenths of a second, otherwise without end.
    ///
    /// @returns what the system's read returned, -1 included; 0 when nothing came.
    /// @throws PortException mustBeOpen when closed, deviceNotConnected when the device node has vanished.
    std::ptrdiff_t readBytes(std::span<std::uint8_t> buffer);

    /// Reads until `length` bytes have arrived or timeout() whole seconds have passed since the call.
    ///
    /// @returns the bytes read, fewer than `length` only when the deadline passed first.
    /// @throws PortException as readBytes does.
    ByteBuffer readData(std::size_t length);

    /// Writes all of `bytes`, waiting for room until timeout() whole seconds have passed since the call; 0
    /// waits without end. A vanished node is not looked for.
    ///
    /// @returns how many bytes were taken, fewer than all only when the time passed first or the system
    ///          refused; -1 when it refused the very first or there was no room for one.
    /// @throws PortException mustBeOpen when closed.
    std::ptrdiff_t writeBytes(std::span<const std::uint8_t> bytes);

    /// As writeBytes.
    std::ptrdiff_t writeData(std::span<const std::uint8_t> bytes);

    /// readData(length) as text. @throws PortException also stringsMustBeUTF8.
    std::string readString(std::size_t length);

    /// Reads byte by byte up to `terminator`, which is consumed and not returned. Waits for it without a
    /// deadline.
    ///
    /// @throws PortException as readBytes does; unableToConvertByteToCharacter on a byte of 0x80 or above.
    std::string readUntilChar(char terminator);

    /// readUntilChar with a line feed.
    std::string readLine();

    /// Waits for one byte without a deadline. @throws PortException as readBytes does.
    std::uint8_t readByte();

    /// One byte as a Unicode scalar value, 0 to 0xFF.
    char32_t readChar();

    /// Writes UTF-8 text as it is. @throws PortException stringsMustBeUTF8 before anything is written;
    /// mustBeOpen.
    std::ptrdiff_t writeString(std::string_view text);

    /// Writes a scalar value as 1 to 4 bytes of UTF-8.
    ///
    /// @throws PortException stringsMustBeUTF8 for a surrogate or a value above 0x10FFFF; mustBeOpen.
    std::ptrdiff_t writeChar(char32_t scalar);

  private:
    class Descriptor;
    using TimePoint = System::Clock::time_point;

    /// One read, after waiting for the line for a short while, but not past `end`.
    /// @returns what the system's read returned; nothing when there was nothing to read.
    /// @throws PortException as readBytes does.
    std::optional<std::ptrdiff_t> readOnce(std::span<std::uint8_t> buffer, std::optional<TimePoint> end);
    /// Waits until the line is ready, or for a short while. @returns false when `until` has come.
    bool waitAWhile(int descriptor, System::Readiness readiness, std::optional<TimePoint> until);
    /// When an operation that starts now has to end; nothing without a timeout.
    std::optional<TimePoint> deadlineFromNow() const;

    std::shared_ptr<Descriptor> currentDescriptor() const;
    /// As currentDescriptor. @throws PortException mustBeOpen when closed.
    std::shared_ptr<Descriptor> openDescriptor() const;
    /// Puts `next` in place, which may be nothing, and hands out what was there.
    std::shared_ptr<Descriptor> exchangeDescriptor(std::shared_ptr<Descriptor> next);

    System& system_;
    mutable Mutex mutex_;
    std::shared_ptr<Descriptor> descriptor_ GUARDED_BY(mutex_);
    std::atomic<int> timeout_{0};
    /// VMIN of the settings; of a line that has none yet, the system's own.
    int minimumBytesToRead_ = 1;
    /// What setSettings() made of the line; nothing where it is not known.
    std::optional<termios> attributes_;
    /// The last read was filled, so that the next one need not wait first.
    bool moreMayBeThere_ = false;
};

}  // namespace velmorindal
