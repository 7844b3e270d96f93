#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "ChangeNotifier.h"
#include "HumDetector.h"
#include "VelmorindalSwitch.h"

namespace velmorindal {

/// What the readings of the running display amount to: the hums that are over, and whether readings still
/// come.
///
/// Main thread, where the model announces. Every reading is taken in exactly once, also when several
/// come between two questions.
class CalibrationReadings {
  public:
    using Time = std::chrono::steady_clock::time_point;
    using Clock = std::function<Time()>;

    /// A hum that is over: its highest clarity, or its length in seconds.
    struct Hum {
        PollingState measurement;
        double value;

        bool operator==(const Hum&) const = default;
    };

    /// Readings older than this are not shown as live.
    static constexpr std::chrono::milliseconds patience{2000};

    /// `model` must outlive this object.
    CalibrationReadings(VelmorindalSwitch& model, Clock clock);

    /// The last hum of the running duration display in seconds, 0 before the first and without such a
    /// display.
    double lastHum();

    /// Whether the running display has brought a reading.
    bool anyReading();

    /// The hums that have ended since the last call, in order.
    std::vector<Hum> takeHums();

    /// Whether a display runs and no reading has come for longer than `patience`.
    bool stale();
    /// How long a display that runs stays fresh if no reading comes; nothing when none runs or it is stale.
    std::optional<std::chrono::milliseconds> untilStale();

  private:
    void noteReading();
    /// Takes in the reading announced last, which is in place by now, and the begin or end of a display.
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
    ChangeNotifier::Subscription changes_;  // last: it uses the above
};

}  // namespace velmorindal
