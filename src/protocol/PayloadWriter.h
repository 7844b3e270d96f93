#pragma once

#include <cstdint>

#include "RawValue.h"
#include "VelmorindalCommand.h"
#include "VelmorindalMessageType.h"

namespace velmorindal {

/// Builds the payload of a command from front to back; values wider than a byte go out low byte first.
class PayloadWriter {
  public:
    PayloadWriter& byte(std::uint8_t value);
    PayloadWriter& byte(WireEnumeration auto value) { return byte(rawValue(value)); }
    /// Two bytes.
    PayloadWriter& word(std::uint16_t value);
    /// Four bytes: the IEEE 754 single-precision bit pattern.
    PayloadWriter& float32(float value);

    /// The whole command: the header and what has been written so far, which must not exceed 255 bytes.
    ByteBuffer commandFrame(VelmorindalMessageType messageType) const;

  private:
    ByteBuffer payload_;
};

}  // namespace velmorindal
