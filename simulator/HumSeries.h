#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <random>

namespace velmorindal {

/// Somebody who hums: short hums of 0.2 to 0.8 s and long ones of 1.6 to 2.6 s in random order, 0.8 to 2 s
/// apart, each with a clarity that rises, wavers and falls. The same series for the same seed. Not safe from
/// several threads.
class HumSeries {
  public:
    using Time = std::chrono::milliseconds;

    explicit HumSeries(std::uint32_t seed);

    /// Goes on to `now`, counted from the start of the series and never going back.
    /// @returns the length in ticks of 40 ms of the last hum that ended meanwhile, if one did.
    std::optional<std::uint16_t> advanceTo(Time now);

    /// The clarity at this moment, 0 to 1: the noise of the room between hums.
    float clarity() const;
    /// The noise of the room at this moment.
    float noise() const;

  private:
    struct Hum {
        Time start;
        Time length;
        float clarity;
    };

    Hum humAfter(Time end);
    /// Evenly spread.
    float between(float low, float high);

    std::mt19937 random_;
    Hum hum_;
    Time now_{0};
};

}  // namespace velmorindal
