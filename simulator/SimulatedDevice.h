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

/// A device without a wire: turns each frame into an answer and an effect. Not safe from several threads.
class SimulatedDevice {
  public:
    /// Starts with `state`; hums only if there are `hums`.
    SimulatedDevice(const DeviceState& state, const std::optional<HumSeries>& hums);

    DeviceState& state() { return state_; }
    const DeviceState& state() const { return state_; }

    /// The whole frame that answers `frame`; an error frame if the device does not understand it.
    ByteBuffer answerTo(std::span<const std::uint8_t> frame) const;
    /// Applies the effect of `frame`: sets or stores settings, or clears a last hum that was reported. A
    /// frame that is answered by an error has no effect.
    void apply(std::span<const std::uint8_t> frame);

    /// Advances the hums to `now`, counted from the start.
    void advanceTo(HumSeries::Time now);
    /// Whether auto-tune reports are switched on.
    bool streams() const;
    /// The next auto-tune report, a whole frame: with the next queued clarity, otherwise the present one.
    ByteBuffer nextReport();
    /// A report with these clarities, a whole frame.
    static ByteBuffer report(float maximum, float minimum);

    /// Reports carry this clarity from now on, and no longer that of the hums.
    void setSteadyClarity(float maximum, float minimum);
    /// The next reports carry these clarities, one each.
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
