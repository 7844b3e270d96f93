#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "ByteBuffer.h"
#include "transport/PortError.h"
#include "transport/SerialSettings.h"

namespace velmorindal {

/// A serial device node: opened exclusively, configured through termios, read and written as raw bytes.
///
/// Every operation blocks its caller. One thread at a time reads, writes, opens and configures; closePort()
/// and fileDescriptor() alone may be called from any thread at any moment, so that a port can be closed under
/// a reader. Dropping the object does not close the descriptor: whoever opened the port calls closePort().
class SerialPort {
  public:
    explicit SerialPort(std::string devicePath);
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

    /// Opens `path` exclusively: a node that another process holds is refused.
    ///
    /// @throws PortException invalidPath, then mustReceiveOrTransmit, both before the file system is touched;
    ///         failedToOpen, after which fileDescriptor() is -1, reads throw deviceNotConnected and writes
    ///         return -1.
    void openPort(bool toReceive, bool andTransmit);

    /// Configures the line. Does nothing while closed. What the system refuses is not reported.
    ///
    /// Parity bits that are already set stay set. `minimumBytesToRead` or `timeout` outside 0..255 stops the
    /// process.
    void setSettings(const SerialSettings& settings);

    /// Closes the descriptor, if there is one, and makes it absent. Safe to repeat; never waits: a read or
    /// write that is still inside the system keeps the descriptor alive until it returns.
    void closePort();

    /// One read of up to `buffer.size()` bytes.
    ///
    /// @returns what the system's read returned, 0 and -1 included.
    /// @throws PortException mustBeOpen when closed, deviceNotConnected when the device node has vanished.
    std::ptrdiff_t readBytes(std::span<std::uint8_t> buffer);

    /// Reads until `length` bytes have arrived or timeout() whole seconds have passed since the call.
    ///
    /// Each underlying read waits as VMIN and VTIME say.
    /// @returns the bytes read, fewer than `length` only when the deadline passed first.
    /// @throws PortException as readBytes does.
    ByteBuffer readData(std::size_t length);

    /// One write of all of `bytes`; a short write is not retried and a vanished node is not looked for. A
    /// device that takes nothing is waited for until timeout() seconds have passed.
    ///
    /// @returns what the system's write returned, -1 included: fewer than all of `bytes` when the device took
    ///          no more of them.
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

    std::shared_ptr<Descriptor> currentDescriptor() const;
    /// As currentDescriptor. @throws PortException mustBeOpen when closed.
    std::shared_ptr<Descriptor> openDescriptor() const;
    /// Puts `next` in place, which may be nothing, and hands out what was there.
    std::shared_ptr<Descriptor> exchangeDescriptor(std::shared_ptr<Descriptor> next);

    mutable std::mutex mutex_;
    std::shared_ptr<Descriptor> descriptor_;
    std::atomic<int> timeout_{0};
};

}  // namespace velmorindal
