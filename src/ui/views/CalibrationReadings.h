#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "ChangeNotifier.h"
#include "HumDetector.h"
#include "VelmorindalSwitch.h"

namespace velmorindal {

/// Evaluates the readings of the running display: the hums that have ended, and whether readings
/// still arrive.
///
/// Main thread only, where the model announces. Every reading counts exactly once, also when several arrive
/// between two calls.
class CalibrationReadings {
  public:
    using Time = std::chrono::steady_clock::time_point;
    using Clock = std::function<Time()>;

    /// A hum that has ended: its highest clarity, or its length in seconds.
    struct Hum {
        PollingState measurement;
        double value;

        bool operator==(const Hum&) const = default;
    };

    /// A reading older than this is no longer live.
    static constexpr std::chrono::milliseconds patience{2000};

    /// `model` must outlive this object.
    CalibrationReadings(VelmorindalSwitch& model, Clock clock);

    /// The last hum of the running duration display in seconds; 0 before the first hum, or if none runs.
    double lastHum();

    /// Whether the running display has had a reading.
    bool anyReading();

    /// The hums that have ended since the last call, in order.
    std::vector<Hum> takeHums();

    /// Whether a display runs and has had no reading for longer than `patience`.
    bool stale();
    /// How long until the running display is stale if no reading comes; nothing when none runs or it
    /// is stale.
    std::optional<std::chrono::milliseconds> untilStale();

  private:
    void noteReading();
    /// Processes the reading announced last, which the model has by now, and the start or end of a display.
    void update();

    VelmorindalSwitch& model_;
    const Clock clock_;
    std::uint64_t seen_ = 0;
    bool pending_ = false;
    PollingState display_ = PollingState::none;
    bool anyReading_ = false;
    Time latest_{};
    double lastHum_ = 0.0;
    HumDetector clarityHums_;
    std::vector<Hum> hums_;
    ChangeNotifier::Subscription changes_;  // last: its observer uses the members above
};

}  // namespace velmorindal
