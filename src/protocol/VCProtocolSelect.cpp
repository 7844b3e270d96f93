#include "VCProtocolSelect.h"

#include "PayloadReader.h"
#include "PayloadWriter.h"

namespace velmorindal {

std::optional<VCProtocolSelect::CommProtocol> VCProtocolSelect::commProtocolFromRawValue(std::uint8_t value) {
    return fromRawValue(value, CommProtocol::Bluetooth);
}

ByteBuffer VCProtocolSelect::serialize() const {
    requireValid();
    return PayloadWriter{}.byte(proto).commandFrame(messageType);
}

bool VCProtocolSelect::deserialize(std::span<const std::uint8_t> buffer) {
    const auto payload = PayloadReader::ofFrame(buffer, messageType, 1);
    _valid = payload.has_value();
    if (payload) {
        proto = CommProtocol{payload->bits(0, 0x01)};
    }
    return _valid;
}

}  // namespace velmorindal
