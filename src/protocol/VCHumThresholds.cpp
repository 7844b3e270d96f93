#include "VCHumThresholds.h"

#include "FloatPair.h"
#include "PayloadWriter.h"

namespace velmorindal {

ByteBuffer VCHumThresholds::serialize() const {
    // Unlike most messages, it is sent whatever `_valid` says.
    return PayloadWriter{}.float32(apThreshold).float32(siThreshold).commandFrame(messageType);
}

bool VCHumThresholds::deserialize(std::span<const std::uint8_t> buffer) {
    const auto pair = FloatPair::ofFrame(buffer, messageType);
    _valid = pair.has_value();
    if (pair) {
        apThreshold = pair->first;
        siThreshold = pair->second;
    }
    return _valid;
}

}  // namespace velmorindal
