#include "VelmorindalCommand.h"

#include <algorithm>

#include "Print.h"

namespace velmorindal {

ByteBuffer VelmorindalCommandProtocol::addHeader(std::span<const std::uint8_t> payload,
                                                 std::uint8_t messageType, bool isCommand) {
    ByteBuffer frame(HeaderSize + payload.size());
    frame[0] = isCommand ? CommandByte : ResponseByte;
    frame[1] = MarkerByte;
    frame[TypeOffset] = messageType;
    frame[LengthOffset] = static_cast<std::uint8_t>(payload.size() & 0xFFU);
    std::ranges::copy(payload, frame.begin() + HeaderSize);
    return frame;
}

bool VelmorindalCommandProtocol::verifyHeader(std::span<const std::uint8_t> buffer,
                                              std::uint8_t messageType) {
    if (buffer.size() < HeaderSize) {
        print("Header length was ", buffer.size(), " and I expected at least ", HeaderSize);
        return false;
    }
    if (buffer[0] != CommandByte && buffer[0] != ResponseByte) {
        // The printed line lists the error byte too, but a device's error frame is refused on purpose.
        print("Message type unexpected: ", buffer[0], " command/response/error are ", CommandByte,
              ResponseByte, ErrorByte);
        return false;
    }
    if (buffer[1] != MarkerByte) {
        print("Expected binary message (", MarkerByte, "). Got ", buffer[1]);
        return false;
    }
    if (buffer[TypeOffset] != messageType) {
        // The unmatched parenthesis is part of the line.
        print("Expected message type ", messageType, "). Got ", buffer[TypeOffset]);
        return false;
    }
    const std::size_t payloadLength = buffer.size() - HeaderSize;
    if (payloadLength != buffer[LengthOffset]) {
        print("Expected total payload length of ", buffer[LengthOffset], " but got ", payloadLength);
        return false;
    }
    return true;
}

ByteBuffer VelmorindalCommand::serialize() const {
    throw VelmorindalException{VelmorindalError::NotImplementedError};
}

bool VelmorindalCommand::deserialize(std::span<const std::uint8_t> /*buffer*/) {
    throw VelmorindalException{VelmorindalError::NotImplementedError};
}

void VelmorindalCommand::requireValid() const {
    if (!_valid) {
        throw VelmorindalException{VelmorindalError::InvalidMessageError};
    }
}

}  // namespace velmorindal
