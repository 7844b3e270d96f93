#include "VCHumDuration.h"

#include "PayloadReader.h"
#include "PayloadWriter.h"

namespace velmorindal {

std::optional<VCHumDuration::DetectMode> VCHumDuration::detectModeFromRawValue(std::uint8_t value) {
    return fromRawValue(value, DetectMode::DetectModeShortAndLong);
}

ByteBuffer VCHumDuration::serialize() const {
    requireValid();
    return PayloadWriter{}
        .byte(detect_mode)
        .word(min_short)
        .word(max_short)
        .word(min_long)
        .word(max_long)
        .byte(hold_on)
        .byte(hold_off)
        .commandFrame(messageType);
}

bool VCHumDuration::deserialize(std::span<const std::uint8_t> buffer) {
    const auto payload = PayloadReader::ofFrame(buffer, messageType, 11);
    _valid = payload.has_value();
    if (payload) {
        detect_mode = DetectMode{payload->bits(0, 0x03)};
        min_short = payload->lowByteOfWord(1);
        max_short = payload->lowByteOfWord(3);
        min_long = payload->lowByteOfWord(5);
        max_long = payload->lowByteOfWord(7);
        hold_on = payload->byte(9);
        hold_off = payload->byte(10);
    }
    return _valid;
}

}  // namespace velmorindal
