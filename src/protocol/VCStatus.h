#pragma once

#include <cstdint>
#include <span>

#include "VelmorindalCommand.h"

namespace velmorindal {

/// The state of the radio link between dongle and device. Only received; asked for by a query.
///
///     response, 1 byte
///     0  1  _linkState, any value; 0 when there is no link
class VCStatus final : public VelmorindalCommand {
  public:
    static constexpr VelmorindalMessageType messageType = VelmorindalMessageType::status;

    std::uint8_t _linkState = 0;

    ByteBuffer serialize() const override;
    bool deserialize(std::span<const std::uint8_t> buffer) override;
};

}  // namespace velmorindal
