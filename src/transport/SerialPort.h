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
/// Every operation blocks its caller, but not for longer than it says, whatever other programs do with the
/// line. Only one thread at a time may read, write, open and configure. closePort(), fileDescriptor() and
/// timeout() may be called from any thread at any time, so that a port can be closed during a read. The
/// destructor does not close the descriptor: call closePort() for that.
class SerialPort {
  public:
    /// `system` must outlive the port.
    SerialPort(std::string devicePath, System& system);
    SerialPort(const SerialPort&) = delete;
    SerialPort& operator=(const SerialPort&) = delete;
    ~SerialPort();

    /// The device node.
    const std::string path;

    /// The descriptor; nothing while closed, -1 after an open that failed.
    std::optional<int> fileDescriptor() const;

    /// The deadline of readData() and of writes in whole seconds, 0 for none, as setSettings() has set it;
    /// 0 before.
    int timeout() const;

    /// Opens for both directions, as the other openPort().
    void openPort();

    /// Opens `path` exclusively: a node that another process holds is refused. The line no longer echoes. A
    /// descriptor from an earlier open is dropped without a close.
    ///
    /// @param whenSlow called once, on another thread, when the call takes longer than System::slowOpen:
    ///        another process is still closing the port, which may take half a minute.
    /// @throws PortException invalidPath, then mustReceiveOrTransmit, both before the file system is touched;
    ///         failedToOpen with the system's reason, after which fileDescriptor() is -1, reads throw
    ///         deviceNotConnected and writes return -1.
    void openPort(bool toReceive, bool andTransmit, const std::function<void()>& whenSlow = {});

    /// Configures the line. Does nothing while closed. Settings that the system refuses are not reported.
    ///
    /// Parity bits that are already set stay set. A `minimumBytesToRead` or `timeout` outside 0..255 stops
    /// the process.
    void setSettings(const SerialSettings& settings);

    /// Restores the settings of setSettings() if another program has changed them since.
    void renewSettings();

    /// Closes the port. Safe to repeat. A read or write that is running in another thread keeps the
    /// descriptor open until it returns, and another thread waits for output that the device does not take.
    /// Only where no thread can be started is that output waited for here.
    void closePort();

    /// One read of up to `buffer.size()` bytes. Waits for the first byte as VMIN and VTIME of the settings
    /// say: with a `minimumBytesToRead` of 0 for `timeout` tenths of a second, otherwise without a deadline.
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
    /// waits without a deadline. Does not check whether the node has vanished.
    ///
    /// @returns how many bytes were taken, fewer than all only when the deadline passed first or the system
    ///          refused the rest; -1 when not even one was taken.
    /// @throws PortException mustBeOpen when closed.
    std::ptrdiff_t writeBytes(std::span<const std::uint8_t> bytes);

    /// As writeBytes.
    std::ptrdiff_t writeData(std::span<const std::uint8_t> bytes);

    /// readData(length) as text.
    ///
    /// @throws PortException as readData() does; stringsMustBeUTF8 when the bytes are not UTF-8. They are
    ///         lost then.
    std::string readString(std::size_t length);

    /// Reads byte by byte up to `terminator`, which is read and not returned. Waits for it without
    /// a deadline.
    ///
    /// @throws PortException as readBytes does; unableToConvertByteToCharacter on a byte of 0x80 or above.
    std::string readUntilChar(char terminator);

    /// readUntilChar with a line feed.
    std::string readLine();

    /// Waits for one byte without a deadline. @throws PortException as readBytes does.
    std::uint8_t readByte();

    /// readByte() as a Unicode scalar value, 0 to 0xFF. @throws PortException as readByte() does.
    char32_t readChar();

    /// Writes UTF-8 text as it is.
    ///
    /// @returns as writeBytes().
    /// @throws PortException stringsMustBeUTF8 before anything is written; mustBeOpen.
    std::ptrdiff_t writeString(std::string_view text);

    /// Writes a scalar value as 1 to 4 bytes of UTF-8.
    ///
    /// @returns as writeBytes().
    /// @throws PortException stringsMustBeUTF8 for a surrogate or a value above 0x10FFFF; mustBeOpen.
    std::ptrdiff_t writeChar(char32_t scalar);

  private:
    class Descriptor;
    using TimePoint = System::Clock::time_point;

    /// One read, after a short wait for the line that does not go past `end`. `now` is the time of the call.
    /// @returns what the system's read returned, or nothing when there was nothing to read.
    /// @throws PortException as readBytes does.
    std::optional<std::ptrdiff_t> readOnce(std::span<std::uint8_t> buffer, TimePoint now,
                                           std::optional<TimePoint> end);
    /// Waits until the line is ready, but only for a short time after `now`, the time of the call, and not
    /// past `until`.
    void waitAWhile(int descriptor, System::Readiness readiness, TimePoint now,
                    std::optional<TimePoint> until);
    /// When an operation that starts at `now` must end; nothing without a deadline.
    std::optional<TimePoint> deadlineFrom(TimePoint now) const;

    std::shared_ptr<Descriptor> currentDescriptor() const;
    /// As currentDescriptor. @throws PortException mustBeOpen when closed.
    std::shared_ptr<Descriptor> openDescriptor() const;
    /// Replaces the descriptor by `next`, which may be null, and returns the old one.
    std::shared_ptr<Descriptor> exchangeDescriptor(std::shared_ptr<Descriptor> next);

    System& system_;
    mutable Mutex mutex_;
    std::shared_ptr<Descriptor> descriptor_ GUARDED_BY(mutex_);
    std::atomic<int> timeout_{0};
    /// VMIN of the settings; before those, the default of the system.
    int minimumBytesToRead_ = 1;
    /// The attributes after setSettings(); nothing if they are not known.
    std::optional<termios> attributes_;
    /// The last read filled its buffer, so the next one need not wait first.
    bool moreMayBeThere_ = false;
};

}  // namespace velmorindal
