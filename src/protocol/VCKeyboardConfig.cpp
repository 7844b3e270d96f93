#include "VCKeyboardConfig.h"

#include "PayloadReader.h"
#include "PayloadWriter.h"

namespace velmorindal {

ByteBuffer VCKeyboardConfig::serialize() const {
    // Unlike most messages, it is sent whatever `_valid` says.
    return PayloadWriter{}
        .byte(shortKey0Modifier)
        .byte(shortKey0)
        .byte(shortKey1Modifier)
        .byte(shortKey1)
        .byte(longKey0Modifier)
        .byte(longKey0)
        .byte(longKey1Modifier)
        .byte(longKey1)
        .commandFrame(messageType);
}

bool VCKeyboardConfig::deserialize(std::span<const std::uint8_t> buffer) {
    const auto payload = PayloadReader::ofFrame(buffer, messageType, 8);
    _valid = payload.has_value();
    if (payload) {
        shortKey0Modifier = payload->byte(0);
        shortKey0 = payload->byte(1);
        shortKey1Modifier = payload->byte(2);
        shortKey1 = payload->byte(3);
        longKey0Modifier = payload->byte(4);
        longKey0 = payload->byte(5);
        longKey1Modifier = payload->byte(6);
        longKey1 = payload->byte(7);
    }
    return _valid;
}

}  // namespace velmorindal
