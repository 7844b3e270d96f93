#include "VCOutputPath.h"

#include "PayloadReader.h"
#include "PayloadWriter.h"

namespace velmorindal {

std::optional<VCOutputPath::OutputPath> VCOutputPath::outputPathFromRawValue(std::uint8_t value) {
    return fromRawValue(value, OutputPath::Relay);
}

ByteBuffer VCOutputPath::serialize() const {
    requireValid();
    return PayloadWriter{}.byte(path).commandFrame(messageType);
}

bool VCOutputPath::deserialize(std::span<const std::uint8_t> buffer) {
    const auto payload = PayloadReader::ofFrame(buffer, messageType, 1);
    _valid = payload.has_value();
    if (payload) {
        path = OutputPath{payload->bits(0, 0x01)};
    }
    return _valid;
}

}  // namespace velmorindal
