#include "VCStatus.h"

#include "PayloadReader.h"

namespace velmorindal {

ByteBuffer VCStatus::serialize() const {
    requireValid();
    return VelmorindalCommand::serialize();
}

bool VCStatus::deserialize(std::span<const std::uint8_t> buffer) {
    const auto payload = PayloadReader::ofFrame(buffer, messageType, 1);
    _valid = payload.has_value();
    if (payload) {
        _linkState = payload->byte(0);
    }
    return _valid;
}

}  // namespace velmorindal
