#pragma once

#include <cstdint>
#include <span>

#include "VelmorindalCommand.h"

namespace velmorindal {

/// The range of clarity measured on a channel. The command selects a channel, and reports arrive.
///
///     command, 1 byte                response, 8 bytes
///     0  1  channel                  0  4  _minThreshold
///                                    4  4  _maxThreshold
class VCAutoTune final : public VelmorindalCommand {
  public:
    static constexpr VelmorindalMessageType messageType = VelmorindalMessageType::autoTune;

    std::uint8_t channel = 0;
    float _minThreshold = 0.0F;
    float _maxThreshold = 0.0F;

    ByteBuffer serialize() const override;
    bool deserialize(std::span<const std::uint8_t> buffer) override;
};

}  // namespace velmorindal
