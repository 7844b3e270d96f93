#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "protocol/VelmorindalCommand.h"

namespace velmorindal {

/// Bytes on their way to the host: kept until the system takes them and, on a paced line, until a line of
/// 115200 baud, 8 data bits, no parity and one stop bit would have carried them. Not safe from several
/// threads.
class OutgoingLine {
  public:
    using Clock = std::chrono::steady_clock;

    explicit OutgoingLine(bool paced) : paced_{paced} {}

    void put(std::span<const std::uint8_t> bytes, Clock::time_point now);
    /// Puts them once `due` has come.
    void putLater(ByteBuffer bytes, Clock::time_point due);
    /// Writes to the non-blocking `descriptor` what is due and what it takes.
    /// @throws std::system_error when the system refuses for another reason than being full.
    void write(int descriptor, Clock::time_point now);

    std::size_t waiting() const { return pending_.size() - written_; }
    /// The system was full: it is worth writing again once `descriptor` can be written to.
    bool isBlocked() const { return blocked_; }
    /// When there will be something to write that cannot be written now; nothing where no time needs to pass.
    std::optional<Clock::time_point> due() const;

  private:
    struct LateBytes {
        Clock::time_point due;
        ByteBuffer bytes;
    };

    void putWhatIsDue(Clock::time_point now);
    /// When a paced line will have carried the next portion; nothing where it need not be waited for.
    std::optional<Clock::time_point> portionDue() const;
    std::size_t nextPortion() const;

    bool paced_;
    bool blocked_ = false;
    std::vector<LateBytes> late_;
    ByteBuffer pending_;
    std::size_t written_ = 0;
    /// When the line has carried all that was written so far.
    Clock::time_point free_;
};

}  // namespace velmorindal
