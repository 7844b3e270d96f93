#include "VCAutoTune.h"

#include "FloatPair.h"
#include "PayloadWriter.h"

namespace velmorindal {

ByteBuffer VCAutoTune::serialize() const {
    requireValid();
    return PayloadWriter{}.byte(channel).commandFrame(messageType);
}

bool VCAutoTune::deserialize(std::span<const std::uint8_t> buffer) {
    // A report does not contain its channel, so `channel` keeps its value.
    const auto pair = FloatPair::ofFrame(buffer, messageType);
    _valid = pair.has_value();
    if (pair) {
        _minThreshold = pair->first;
        _maxThreshold = pair->second;
    }
    return _valid;
}

}  // namespace velmorindal
