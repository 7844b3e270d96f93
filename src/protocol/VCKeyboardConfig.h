#pragma once

#include <cstdint>
#include <span>

#include "VelmorindalCommand.h"

namespace velmorindal {

/// Two keystrokes for a short hum and two for a long one, each a modifier and a USB HID usage. Sent
/// and received.
///
///     command and response, 8 bytes
///     0  1  shortKey0Modifier
///     1  1  shortKey0
///     2  1  shortKey1Modifier
///     3  1  shortKey1
///     4  1  longKey0Modifier
///     5  1  longKey0
///     6  1  longKey1Modifier
///     7  1  longKey1
class VCKeyboardConfig final : public VelmorindalCommand {
  public:
    static constexpr VelmorindalMessageType messageType = VelmorindalMessageType::keyboardConfig;

    std::uint8_t shortKey0Modifier = 0;
    std::uint8_t shortKey0 = 0;
    std::uint8_t shortKey1Modifier = 0;
    std::uint8_t shortKey1 = 0;
    std::uint8_t longKey0Modifier = 0;
    std::uint8_t longKey0 = 0;
    std::uint8_t longKey1Modifier = 0;
    std::uint8_t longKey1 = 0;

    ByteBuffer serialize() const override;
    bool deserialize(std::span<const std::uint8_t> buffer) override;
};

}  // namespace velmorindal
