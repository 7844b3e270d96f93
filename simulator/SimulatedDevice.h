#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <vector>

#include "DeviceState.h"
#include "HumSeries.h"
#include "VelmorindalCommand.h"

namespace velmorindal {

/// What a device does with the frames that reach it, without any wire: turns a frame into an answer and an
/// effect. Not safe from several threads.
class SimulatedDevice {
  public:
    SimulatedDevice(const DeviceState& state, const std::optional<HumSeries>& hums);

    DeviceState& state() { return state_; }
    const DeviceState& state() const { return state_; }

    /// The whole frame that answers `frame`; an error frame where the device can do nothing with it.
    ByteBuffer answerTo(std::span<const std::uint8_t> frame) const;
    /// What `frame` does to the device, if anything: a command's settings, the order to store, the last hum
    /// having been reported. Nothing for a frame that is answered by an error.
    void apply(std::span<const std::uint8_t> frame);

    /// Goes on humming until `now`, counted from the start.
    void advanceTo(HumSeries::Time now);
    bool streams() const;
    /// The next auto-tune report, a whole frame.
    ByteBuffer nextReport();
    static ByteBuffer report(float maximum, float minimum);

    void setSteadyClarity(float maximum, float minimum);
    void queueClarities(const std::vector<float>& maxima);

  private:
    struct Clarity {
        float maximum = 0.05F;
        float minimum = 0.0F;
    };

    Clarity clarity() const;

    DeviceState state_;
    DeviceSettings initialSettings_;
    std::optional<HumSeries> hums_;
    std::optional<Clarity> steady_;
    std::deque<float> queued_;
};

}  // namespace velmorindal
