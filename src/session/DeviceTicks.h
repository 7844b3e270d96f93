#pragma once

#include <cmath>
#include <cstdint>
#include <optional>

namespace velmorindal {

// The device counts durations in ticks of 40 ms. Each conversion has a different formula on purpose: the last
// digit is shown or sent.

/// Seconds in whole ticks, rounded towards zero, or nothing if they do not fit sixteen bits.
inline std::optional<std::uint16_t> wholeTicks(float seconds) {
    const float ticks = seconds / 0.04F;
    if (!std::isfinite(ticks) || ticks >= 65536.0F || ticks <= -1.0F) {
        return std::nullopt;
    }
    return static_cast<std::uint16_t>(ticks);
}

/// The cutoff between short and long hums, in seconds.
inline float thresholdSeconds(std::uint16_t ticks) {
    return static_cast<float>(ticks) * 40.0F / 1000.0F;
}

/// The length of a hum in seconds.
inline double humSeconds(std::uint16_t ticks) {
    return ticks * 0.04;
}

}  // namespace velmorindal
