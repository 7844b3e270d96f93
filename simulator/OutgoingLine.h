#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "VelmorindalCommand.h"

namespace velmorindal {

/// Bytes on their way to the host. They are kept until they are taken and, on a paced line, until a line of
/// 115200 baud, 8 data bits, no parity and one stop bit would have transmitted them. Not safe from
/// several threads.
class OutgoingLine {
  public:
    using Clock = std::chrono::steady_clock;

    explicit OutgoingLine(bool paced) : paced_{paced} {}

    /// Appends `bytes`.
    void put(std::span<const std::uint8_t> bytes, Clock::time_point now);
    /// Appends `bytes` once `due` has come.
    void putLater(ByteBuffer bytes, Clock::time_point due);
    /// The bytes that the host can have now. Valid until the next call of another operation.
    std::span<const std::uint8_t> ready(Clock::time_point now);
    /// The host has taken the first `count` of the ready bytes.
    void take(std::size_t count);

    /// The number of bytes appended and not taken.
    std::size_t waiting() const { return pending_.size() - taken_; }
    /// When more bytes will be ready; nothing if that does not depend on time.
    std::optional<Clock::time_point> due() const;

  private:
    struct LateBytes {
        Clock::time_point due;
        ByteBuffer bytes;
    };

    void putWhatIsDue(Clock::time_point now);
    /// When a paced line will have transmitted the next portion; nothing if there is no need to wait.
    std::optional<Clock::time_point> portionDue() const;
    std::size_t nextPortion() const;

    bool paced_;
    std::vector<LateBytes> late_;
    ByteBuffer pending_;
    std::size_t taken_ = 0;
    /// When the line has transmitted all that was taken so far.
    Clock::time_point free_;
};

}  // namespace velmorindal
