#pragma once

#include <cstdint>
#include <span>

#include "VelmorindalCommand.h"

namespace velmorindal {

/// How clear a sound must be to count as a hum, 0 to 1. Sent and received.
///
///     command and response, 8 bytes
///     0  4  apThreshold
///     4  4  siThreshold
class VCHumThresholds final : public VelmorindalCommand {
  public:
    static constexpr VelmorindalMessageType messageType = VelmorindalMessageType::humThresholds;

    float apThreshold = 0.0F;
    float siThreshold = 0.0F;

    ByteBuffer serialize() const override;
    bool deserialize(std::span<const std::uint8_t> buffer) override;
};

}  // namespace velmorindal
