#pragma once

#include "VelmorindalCommand.h"

namespace velmorindal {

/// The order to store, for good, the settings that the device has been sent. Only sent.
///
///     command, no payload
///
/// With nothing in it that could be wrong, it is sent whatever `_valid` says.
class VCWriteSettings final : public VelmorindalCommand {
  public:
    static constexpr VelmorindalMessageType messageType = VelmorindalMessageType::writeSettings;

    ByteBuffer serialize() const override;
};

}  // namespace velmorindal
