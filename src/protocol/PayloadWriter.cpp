#include "PayloadWriter.h"

#include <bit>

namespace velmorindal {

PayloadWriter& PayloadWriter::byte(std::uint8_t value) {
    payload_.push_back(value);
    return *this;
}

PayloadWriter& PayloadWriter::word(std::uint16_t value) {
    byte(static_cast<std::uint8_t>(value & 0xFFU));
    return byte(static_cast<std::uint8_t>(value >> 8U));
}

PayloadWriter& PayloadWriter::float32(float value) {
    static_assert(sizeof(float) == sizeof(std::uint32_t));
    const auto bits = std::bit_cast<std::uint32_t>(value);
    word(static_cast<std::uint16_t>(bits & 0xFFFFU));
    return word(static_cast<std::uint16_t>(bits >> 16U));
}

ByteBuffer PayloadWriter::commandFrame(VelmorindalMessageType messageType) const {
    constexpr bool isCommand = true;
    return VelmorindalCommandProtocol::addHeader(payload_, rawValue(messageType), isCommand);
}

}  // namespace velmorindal
