#pragma once

#include "VelmorindalCommand.h"

namespace velmorindal {

/// The order to store permanently the settings that the device has been sent. Only sent.
///
///     command, no payload
///
/// It has no fields, so it is sent whatever `_valid` says.
class VCWriteSettings final : public VelmorindalCommand {
  public:
    static constexpr VelmorindalMessageType messageType = VelmorindalMessageType::writeSettings;

    ByteBuffer serialize() const override;
};

}  // namespace velmorindal
