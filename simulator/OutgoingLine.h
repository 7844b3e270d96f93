#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "VelmorindalCommand.h"

namespace velmorindal {

/// Bytes on their way to the host: kept until they are taken and, on a paced line, until a line of 115200
/// baud, 8 data bits, no parity and one stop bit would have carried them. Not safe from several threads.
class OutgoingLine {
  public:
    using Clock = std::chrono::steady_clock;

    explicit OutgoingLine(bool paced) : paced_{paced} {}

    void put(std::span<const std::uint8_t> bytes, Clock::time_point now);
    /// Puts them once `due` has come.
    void putLater(ByteBuffer bytes, Clock::time_point due);
    /// What the host can have now; good until the next call of anything else.
    std::span<const std::uint8_t> ready(Clock::time_point now);
    /// The host has taken that many of the ready bytes.
    void take(std::size_t count);

    /// Bytes that are put and not taken.
    std::size_t waiting() const { return pending_.size() - taken_; }
    /// When there will be something that is not ready now; nothing where no time needs to pass.
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
    std::vector<LateBytes> late_;
    ByteBuffer pending_;
    std::size_t taken_ = 0;
    /// When the line has carried all that was taken so far.
    Clock::time_point free_;
};

}  // namespace velmorindal
