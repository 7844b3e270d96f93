#pragma once

#include <cstdint>
#include <span>

#include "VelmorindalCommand.h"

namespace velmorindal {

/// How long the most recent hum was. Received as the answer to a query; sendable too.
///
///     command and response, 3 bytes
///     0  2  _duration   ticks of 40 ms
///     2  1  _sourceSI   sent as 0 or 1; in a response anything but 0 is true
class VCLastHumDuration final : public VelmorindalCommand {
  public:
    static constexpr VelmorindalMessageType messageType = VelmorindalMessageType::lastHumDuration;

    std::uint16_t _duration = 0;
    bool _sourceSI = false;

    ByteBuffer serialize() const override;
    bool deserialize(std::span<const std::uint8_t> buffer) override;
};

}  // namespace velmorindal
