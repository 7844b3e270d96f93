#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "System.h"

namespace velmorindal {

/// Says why a candidate cannot be used as a dongle: one line on standard error with its path, what was tried,
/// the system's own words, and what to do about it.
///
/// Every operation may be called from any thread. `systemError` is an `errno`, 0 where there is none.
class DongleTrouble {
  public:
    /// `system` must outlive this.
    DongleTrouble(std::string path, System& system);

    /// It is a directory, a file or the like, or cannot be looked at, and was left alone.
    void notASerialPort() const;
    /// Names the group that has access or the process that holds the port, where that is the reason.
    void notOpened(int systemError) const;
    /// The open has not returned yet.
    void stillBeingClosed() const;
    /// Of `asked` bytes of the version query only `taken` were taken; -1 counts as 0.
    void queryNotWritten(std::ptrdiff_t taken, std::size_t asked, int systemError) const;
    /// No whole answer has come by the deadline, only these bytes.
    void noAnswer(std::span<const std::uint8_t> received) const;
    void unplugged() const;
    /// Its answer is not a dongle's.
    void otherDevice(std::string_view answer) const;

  private:
    std::string wayToGetAccess() const;
    std::string wayToGetItFree() const;

    const std::string path_;
    System& system_;
};

}  // namespace velmorindal
