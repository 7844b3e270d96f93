#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "VelmorindalCommand.h"

namespace velmorindal {

/// How the two switch jacks close for short and for long hums. The unit of the pulses is not known. Sent;
/// received, but never asked for.
///
///     command, 12 bytes              response, 11 bytes
///     0   1  config_modeShort        0  1  both modes, from the two lowest bits; 3 is Fixed
///     1   1  config_typeShort        1  1  both types, from the lowest bit
///     2   2  min_pulse_short         2  2  both shortest pulses
///     4   2  max_pulse_short         4  2  both longest pulses
///     6   1  config_modeLong         6  5  not read
///     7   1  config_typeLong
///     8   2  min_pulse_long
///     10  2  max_pulse_long
class VCRelayConfig final : public VelmorindalCommand {
  public:
    static constexpr VelmorindalMessageType messageType = VelmorindalMessageType::relayConfig;

    enum class RelayConfigMode : std::uint8_t {
        RelayConfigModeFollow = 0,
        RelayConfigModeFixed = 1,
        RelayConfigModeToggle = 2,
    };
    enum class RelayConfigType : std::uint8_t {
        RelayConfigTypeNO = 0,  ///< normally open
        RelayConfigTypeNC = 1,  ///< normally closed
    };

    /// The case with that wire value, or nothing.
    static std::optional<RelayConfigMode> relayConfigModeFromRawValue(std::uint8_t value);
    static std::optional<RelayConfigType> relayConfigTypeFromRawValue(std::uint8_t value);

    RelayConfigMode config_modeShort = RelayConfigMode::RelayConfigModeFixed;
    RelayConfigMode config_modeLong = RelayConfigMode::RelayConfigModeFixed;
    RelayConfigType config_typeShort = RelayConfigType::RelayConfigTypeNO;
    RelayConfigType config_typeLong = RelayConfigType::RelayConfigTypeNO;
    std::uint16_t min_pulse_short = 0;
    std::uint16_t min_pulse_long = 0;
    std::uint16_t max_pulse_short = 0;
    std::uint16_t max_pulse_long = 0;

    ByteBuffer serialize() const override;
    bool deserialize(std::span<const std::uint8_t> buffer) override;
};

}  // namespace velmorindal
