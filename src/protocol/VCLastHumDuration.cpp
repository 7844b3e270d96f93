#include "VCLastHumDuration.h"

#include "PayloadReader.h"
#include "PayloadWriter.h"

namespace velmorindal {

ByteBuffer VCLastHumDuration::serialize() const {
    requireValid();
    return PayloadWriter{}.word(_duration).byte(_sourceSI ? 0x01 : 0x00).commandFrame(messageType);
}

bool VCLastHumDuration::deserialize(std::span<const std::uint8_t> buffer) {
    const auto payload = PayloadReader::ofFrame(buffer, messageType, 3);
    _valid = payload.has_value();
    if (payload) {
        _duration = payload->lowByteOfWord(0);
        _sourceSI = payload->byte(2) != 0;
    }
    return _valid;
}

}  // namespace velmorindal
