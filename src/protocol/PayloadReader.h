#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "VelmorindalMessageType.h"

namespace velmorindal {

/// Reads the payload of a received frame that has passed its checks. Holds no copy: the frame must outlive
/// it. Offsets count from the first byte after the header. A value must lie inside the payload as a whole;
/// that is not checked.
class PayloadReader {
  public:
    /// The payload of `frame`, or nothing unless it is one whole frame of `messageType`. Prints one line
    /// naming the first check that failed.
    static std::optional<PayloadReader> ofFrame(std::span<const std::uint8_t> frame,
                                                VelmorindalMessageType messageType);

    /// The same for a message whose payload has exactly `payloadLength` bytes; a whole frame of another
    /// length yields nothing without a line.
    static std::optional<PayloadReader> ofFrame(std::span<const std::uint8_t> frame,
                                                VelmorindalMessageType messageType,
                                                std::size_t payloadLength);

    std::span<const std::uint8_t> bytes() const { return payload_; }

    std::uint8_t byte(std::size_t offset) const { return payload_[offset]; }

    /// The byte at `offset`, with only the bits that are set in `mask`.
    std::uint8_t bits(std::size_t offset, std::uint8_t mask) const;

    /// A 16-bit value as the device reports it, 0..255: commands carry both bytes, but in a response only the
    /// low one counts. The high byte is deliberately ignored.
    std::uint16_t lowByteOfWord(std::size_t offset) const { return payload_[offset]; }

    /// The IEEE 754 single-precision value whose bit pattern is stored at `offset` in four bytes, low
    /// byte first.
    float float32(std::size_t offset) const;

  private:
    explicit PayloadReader(std::span<const std::uint8_t> payload) : payload_{payload} {}

    std::span<const std::uint8_t> payload_;
};

}  // namespace velmorindal
