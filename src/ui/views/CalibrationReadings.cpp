#include "CalibrationReadings.h"

#include <utility>

namespace velmorindal {

CalibrationReadings::CalibrationReadings(VelmorindalSwitch& model, Clock clock)
    : model_{model},
      clock_{std::move(clock)},
      seen_{model.readingsReceived},
      changes_{model.objectWillChange.subscribe([this] { noteReading(); })} {}

void CalibrationReadings::noteReading() {
    if (model_.readingsReceived == seen_) {
        return;
    }
    update();
    seen_ = model_.readingsReceived;
    pending_ = true;
    latest_ = clock_();
}

void CalibrationReadings::update() {
    const PollingState running = model_.pollingState.get();
    if (running != display_) {
        display_ = running;
        lastHum_ = 0.0;
        clarityHums_ = {};
        anyReading_ = false;
        // A pending reading belongs to the display before.
        pending_ = false;
        latest_ = clock_();
    }
    if (!std::exchange(pending_, false)) {
        return;
    }
    anyReading_ = running != PollingState::none;
    if (running == PollingState::clarity) {
        if (const auto highest = clarityHums_.next(model_.detectedClarity.get())) {
            hums_.push_back({.measurement = running, .value = *highest});
        }
    } else if (running == PollingState::duration && model_.detectedDuration.get() > 0.0) {
        lastHum_ = model_.detectedDuration.get();
        hums_.push_back({.measurement = running, .value = lastHum_});
    }
}

double CalibrationReadings::lastHum() {
    update();
    return lastHum_;
}

bool CalibrationReadings::anyReading() {
    update();
    return anyReading_;
}

std::vector<CalibrationReadings::Hum> CalibrationReadings::takeHums() {
    update();
    return std::exchange(hums_, {});
}

bool CalibrationReadings::stale() {
    update();
    return display_ != PollingState::none && clock_() - latest_ > patience;
}

std::optional<std::chrono::milliseconds> CalibrationReadings::untilStale() {
    if (stale() || display_ == PollingState::none) {
        return std::nullopt;
    }
    constexpr std::chrono::milliseconds justAfter{1};
    return std::chrono::ceil<std::chrono::milliseconds>(latest_ + patience - clock_()) + justAfter;
}

}  // namespace velmorindal
