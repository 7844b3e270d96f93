#include "VCRelayConfig.h"

#include "PayloadReader.h"
#include "PayloadWriter.h"

namespace velmorindal {

std::optional<VCRelayConfig::RelayConfigMode> VCRelayConfig::relayConfigModeFromRawValue(std::uint8_t value) {
    return fromRawValue(value, RelayConfigMode::RelayConfigModeToggle);
}

std::optional<VCRelayConfig::RelayConfigType> VCRelayConfig::relayConfigTypeFromRawValue(std::uint8_t value) {
    return fromRawValue(value, RelayConfigType::RelayConfigTypeNC);
}

ByteBuffer VCRelayConfig::serialize() const {
    requireValid();
    return PayloadWriter{}
        .byte(config_modeShort)
        .byte(config_typeShort)
        .word(min_pulse_short)
        .word(max_pulse_short)
        .byte(config_modeLong)
        .byte(config_typeLong)
        .word(min_pulse_long)
        .word(max_pulse_long)
        .commandFrame(messageType);
}

bool VCRelayConfig::deserialize(std::span<const std::uint8_t> buffer) {
    // On purpose not the inverse of the command: one byte shorter, and its short half counts for both halves.
    const auto payload = PayloadReader::ofFrame(buffer, messageType, 11);
    _valid = payload.has_value();
    if (payload) {
        config_modeShort = relayConfigModeFromRawValue(payload->bits(0, 0x03))
                               .value_or(RelayConfigMode::RelayConfigModeFixed);
        config_typeShort = RelayConfigType{payload->bits(1, 0x01)};
        min_pulse_short = payload->lowByteOfWord(2);
        max_pulse_short = payload->lowByteOfWord(4);
        config_modeLong = config_modeShort;
        config_typeLong = config_typeShort;
        min_pulse_long = min_pulse_short;
        max_pulse_long = max_pulse_short;
    }
    return _valid;
}

}  // namespace velmorindal
