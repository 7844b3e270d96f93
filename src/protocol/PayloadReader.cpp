#include "PayloadReader.h"

#include <bit>

#include "RawValue.h"
#include "VelmorindalCommand.h"

namespace velmorindal {

std::optional<PayloadReader> PayloadReader::ofFrame(std::span<const std::uint8_t> frame,
                                                    VelmorindalMessageType messageType) {
    if (!VelmorindalCommandProtocol::verifyHeader(frame, rawValue(messageType))) {
        return std::nullopt;
    }
    return PayloadReader{frame.subspan(VelmorindalCommandProtocol::HeaderSize)};
}

std::optional<PayloadReader> PayloadReader::ofFrame(std::span<const std::uint8_t> frame,
                                                    VelmorindalMessageType messageType,
                                                    std::size_t payloadLength) {
    const auto payload = ofFrame(frame, messageType);
    if (!payload || payload->bytes().size() != payloadLength) {
        return std::nullopt;
    }
    return payload;
}

std::uint8_t PayloadReader::bits(std::size_t offset, std::uint8_t mask) const {
    return static_cast<std::uint8_t>(payload_[offset] & mask);
}

float PayloadReader::float32(std::size_t offset) const {
    std::uint32_t pattern = 0;
    for (std::size_t index = sizeof pattern; index-- > 0;) {
        pattern = (pattern << 8U) | payload_[offset + index];
    }
    return std::bit_cast<float>(pattern);
}

}  // namespace velmorindal
