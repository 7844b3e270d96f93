#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "VelmorindalCommand.h"

namespace velmorindal {

constexpr std::size_t headerSize = VelmorindalCommandProtocol::HeaderSize;
constexpr std::uint8_t wireMarker = VelmorindalCommandProtocol::MarkerByte;
/// The positions of the bytes in a frame's header.
constexpr std::size_t kindOffset = 0;
constexpr std::size_t markerOffset = 1;
constexpr std::size_t typeOffset = 2;
constexpr std::size_t lengthOffset = 3;

/// A frame as the device builds it: kind, marker, type, length, payload. Only the first 255 bytes of a longer
/// payload are used.
ByteBuffer wireFrame(std::uint8_t kind, std::uint8_t type, std::span<const std::uint8_t> payload = {});

/// The payload of a frame, which must have at least a header.
std::span<const std::uint8_t> payloadOf(std::span<const std::uint8_t> frame);

/// Assembles command frames from bytes that arrive in any portions. Not safe from several threads.
class WireFrameReader {
  public:
    void add(std::span<const std::uint8_t> bytes);
    /// The next whole frame, header included, or nothing while its end is missing. Skips bytes that cannot
    /// start a command.
    std::optional<ByteBuffer> next();
    std::size_t skippedBytes() const { return skipped_; }

  private:
    void skipToAStart();

    ByteBuffer pending_;
    std::size_t skipped_ = 0;
};

}  // namespace velmorindal
