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
    PayloadWriter& word(std::uint16_t value);
    /// The IEEE-754 single-precision bit pattern, four bytes.
    PayloadWriter& float32(float value);

    /// The whole command: header and what has been written so far.
    ByteBuffer commandFrame(VelmorindalMessageType messageType) const;

  private:
    ByteBuffer payload_;
};

}  // namespace velmorindal
