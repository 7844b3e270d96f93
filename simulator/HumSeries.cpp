#include "HumSeries.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace velmorindal {
namespace {

using Seconds = std::chrono::duration<float>;

constexpr std::chrono::milliseconds tick{40};
constexpr float rise = 0.12F;  // seconds
constexpr float fall = 0.18F;

float wave(Seconds now, float hertz) {
    return std::sin(2.0F * std::numbers::pi_v<float> * hertz * now.count());
}

}  // namespace

HumSeries::HumSeries(std::uint32_t seed) : random_{seed}, hum_{humAfter(Time{0})} {}

std::optional<std::uint16_t> HumSeries::advanceTo(Time now) {
    std::optional<std::uint16_t> finished;
    now_ = now;
    while (hum_.start + hum_.length <= now_) {
        finished = static_cast<std::uint16_t>(hum_.length / tick);
        hum_ = humAfter(hum_.start + hum_.length);
    }
    return finished;
}

float HumSeries::clarity() const {
    if (now_ < hum_.start) {
        return noise();
    }
    const float since = Seconds{now_ - hum_.start}.count();
    const float left = Seconds{hum_.start + hum_.length - now_}.count();
    const float envelope = std::min({since / rise, left / fall, 1.0F});
    const float wavering = 1.0F + 0.03F * wave(now_, 5.3F) + 0.02F * wave(now_, 1.7F);
    return std::clamp(hum_.clarity * envelope * wavering, noise(), 1.0F);
}

float HumSeries::noise() const {
    return 0.05F + 0.015F * wave(now_, 3.1F) + 0.01F * wave(now_, 0.7F);
}

HumSeries::Hum HumSeries::humAfter(Time end) {
    const auto milliseconds = [](float seconds) { return std::chrono::round<Time>(Seconds{seconds}); };
    const Time start = end + milliseconds(between(0.8F, 2.0F));
    const bool isShort = between(0.0F, 1.0F) < 0.5F;
    const Time length = milliseconds(isShort ? between(0.2F, 0.8F) : between(1.6F, 2.6F));
    return {.start = start, .length = length, .clarity = between(0.4F, 0.9F)};
}

float HumSeries::between(float low, float high) {
    // Not a distribution of the standard library, whose numbers differ between libraries.
    constexpr double range = 4294967296.0;
    return low + (high - low) * static_cast<float>(static_cast<double>(random_()) / range);
}

}  // namespace velmorindal
