#pragma once

#include <cmath>
#include <cstdint>
#include <optional>

namespace velmorindal {

// The device counts durations in ticks of 40 ms. Each of these is calculated in its own way, down to the last
// digit, which is shown or sent.

/// Seconds in whole ticks, cut towards zero, or nothing where they do not fit sixteen bits.
inline std::optional<std::uint16_t> wholeTicks(float seconds) {
    const float ticks = seconds / 0.04F;
    if (!std::isfinite(ticks) || ticks >= 65536.0F || ticks <= -1.0F) {
        return std::nullopt;
    }
    return static_cast<std::uint16_t>(ticks);
}

/// The seconds of a threshold between hums.
inline float thresholdSeconds(std::uint16_t ticks) {
    return static_cast<float>(ticks) * 40.0F / 1000.0F;
}

/// The seconds of a hum.
inline double humSeconds(std::uint16_t ticks) {
    return ticks * 0.04;
}

}  // namespace velmorindal
