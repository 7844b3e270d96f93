#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "VelmorindalCommand.h"

namespace velmorindal {

/// Which hums count, and how long short and long ones last. Sent and received.
///
///     command and response, 11 bytes
///     0   1  detect_mode; of a response only the two lowest bits count
///     1   2  min_short   ticks of 40 ms
///     3   2  max_short   ticks of 40 ms
///     5   2  min_long    ticks of 40 ms
///     7   2  max_long    ticks of 40 ms
///     9   1  hold_on
///     10  1  hold_off
class VCHumDuration final : public VelmorindalCommand {
  public:
    static constexpr VelmorindalMessageType messageType = VelmorindalMessageType::humDuration;

    enum class DetectMode : std::uint8_t {
        DetectModeContinuous = 0,
        DetectModeShortOnly = 1,
        DetectModeLongOnly = 2,
        DetectModeShortAndLong = 3,
    };

    /// The case with that wire value, or nothing.
    static std::optional<DetectMode> detectModeFromRawValue(std::uint8_t value);

    DetectMode detect_mode = DetectMode::DetectModeContinuous;
    std::uint16_t min_short = 0;
    std::uint16_t max_short = 0;
    std::uint16_t min_long = 0;
    std::uint16_t max_long = 0;
    std::uint8_t hold_on = 0;
    std::uint8_t hold_off = 0;

    ByteBuffer serialize() const override;
    bool deserialize(std::span<const std::uint8_t> buffer) override;
};

}  // namespace velmorindal
