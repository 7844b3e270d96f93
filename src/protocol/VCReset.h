#pragma once

#include "VelmorindalCommand.h"

namespace velmorindal {

/// The order to reset the device. Only sent.
///
///     command, no payload
///
/// It has no fields, so it is sent whatever `_valid` says.
class VCReset final : public VelmorindalCommand {
  public:
    static constexpr VelmorindalMessageType messageType = VelmorindalMessageType::reset;

    ByteBuffer serialize() const override;
};

}  // namespace velmorindal
