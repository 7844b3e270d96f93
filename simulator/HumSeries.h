#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <random>

namespace velmorindal {

/// A simulated wearer: short hums of 0.2 to 0.8 s and long ones of 1.6 to 2.6 s in random order, 0.8 to 2 s
/// apart, each with a clarity that rises, varies and falls. The same seed gives the same series. Not safe
/// from several threads.
class HumSeries {
  public:
    using Time = std::chrono::milliseconds;

    explicit HumSeries(std::uint32_t seed);

    /// Advances to `now`, counted from the start of the series; it must not go back.
    /// @returns the length in ticks of 40 ms of the last hum that ended meanwhile, if one did.
    std::optional<std::uint16_t> advanceTo(Time now);

    /// The clarity now, 0 to 1: between hums, the noise of the room.
    float clarity() const;
    /// The noise of the room now, 0 to 1.
    float noise() const;

  private:
    struct Hum {
        Time start;
        Time length;
        float clarity;
    };

    Hum humAfter(Time end);
    /// A random number, uniformly distributed.
    float between(float low, float high);

    std::mt19937 random_;
    Hum hum_;
    Time now_{0};
};

}  // namespace velmorindal
