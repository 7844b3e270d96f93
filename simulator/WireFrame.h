#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "VelmorindalCommand.h"

namespace velmorindal {

constexpr std::size_t headerSize = VelmorindalCommandProtocol::HeaderSize;
/// The second byte of every frame.
constexpr std::uint8_t wireMarker = 0x62;
/// Where the bytes of a frame's header stand.
constexpr std::size_t kindOffset = 0;
constexpr std::size_t markerOffset = 1;
constexpr std::size_t typeOffset = 2;
constexpr std::size_t lengthOffset = 3;

/// The device's own idea of a frame: kind, marker, type, length, payload. Of a payload beyond 255 bytes the
/// rest is left out.
ByteBuffer wireFrame(std::uint8_t kind, std::uint8_t type, std::span<const std::uint8_t> payload = {});

/// The payload of a whole frame.
std::span<const std::uint8_t> payloadOf(std::span<const std::uint8_t> frame);

/// Puts command frames together from bytes that arrive in any portions.
class WireFrameReader {
  public:
    void add(std::span<const std::uint8_t> bytes);
    /// The next whole frame, header included, or nothing as long as its end is missing. What cannot be the
    /// start of a command is skipped byte by byte.
    std::optional<ByteBuffer> next();
    std::size_t skippedBytes() const { return skipped_; }

  private:
    void skipToAStart();

    ByteBuffer pending_;
    std::size_t skipped_ = 0;
};

}  // namespace velmorindal
