#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "System.h"

namespace velmorindal {

/// Says why a candidate cannot be used as a dongle: one line on standard error with its path, what was tried,
/// the system's error text, and what to do about it.
///
/// Safe from any thread. `systemError` is an `errno`, 0 where there is none.
class DongleTrouble {
  public:
    /// `system` must outlive this object.
    DongleTrouble(std::string path, System& system);

    /// It is a directory, a file or the like, or its kind cannot be read. It was not opened.
    void notASerialPort() const;
    /// The open has failed. Names the group that has access, or the process that holds the port, where that
    /// is the reason.
    void notOpened(int systemError) const;
    /// The open takes long: another process is still closing the port.
    void stillBeingClosed() const;
    /// Of the `asked` bytes of the version query only `taken` were taken; -1 counts as 0.
    void queryNotWritten(std::ptrdiff_t taken, std::size_t asked, int systemError) const;
    /// No whole header has come by the deadline, only these bytes.
    void noAnswer(std::span<const std::uint8_t> received) const;
    /// Its node has vanished during the exchange.
    void unplugged() const;
    /// Its answer is not that of a dongle.
    void otherDevice(std::string_view answer) const;

  private:
    std::string wayToGetAccess() const;
    std::string wayToGetItFree() const;

    const std::string path_;
    System& system_;
};

}  // namespace velmorindal
