#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "VelmorindalCommand.h"

namespace velmorindal {

/// The radio protocol that the device speaks. Sent and received.
///
///     command and response, 1 byte
///     0  1  proto; of a response only the lowest bit counts
class VCProtocolSelect final : public VelmorindalCommand {
  public:
    static constexpr VelmorindalMessageType messageType = VelmorindalMessageType::protocolSelect;

    enum class CommProtocol : std::uint8_t { Gazell = 0, Bluetooth = 1 };

    /// The case with that wire value, or nothing.
    static std::optional<CommProtocol> commProtocolFromRawValue(std::uint8_t value);

    CommProtocol proto = CommProtocol::Gazell;

    ByteBuffer serialize() const override;
    bool deserialize(std::span<const std::uint8_t> buffer) override;
};

}  // namespace velmorindal
