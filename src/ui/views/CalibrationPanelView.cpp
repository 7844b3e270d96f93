#include "ui/views/CalibrationPanelView.h"

#include "diagnostics/Print.h"

namespace velmorindal {
namespace {

ProgressBar readingBar(double value, double maximum) {
    return {.value = value,
            .maxValue = maximum,
            .backgroundEnabled = true,
            .backgroundColor = colors::veryLightGrey,
            .foregroundColor = colors::blue};
}

}  // namespace

Color CalibrationPanelView::Indicator::color() const {
    return lit ? colors::green : colors::grey;
}

CalibrationPanelView::CalibrationPanelView(VelmorindalSwitch& model)
    : velmorindal{model}, changes_{model.objectWillChange.subscribe([this] {
          // What an ended run still announces is no hum of the next one.
          const double duration = velmorindal.detectedDuration.get();
          if (duration > 0.0 && velmorindal.pollingState.get() == PollingState::duration) {
              lastHum_ = duration;
          }
      })} {}

bool CalibrationPanelView::showClarityEnabled() const {
    return velmorindal.pollingState.get() != PollingState::duration;
}

bool CalibrationPanelView::showDurationEnabled() const {
    return velmorindal.pollingState.get() != PollingState::clarity;
}

void CalibrationPanelView::showClarityPressed() {
    toggle(PollingState::clarity);
}

void CalibrationPanelView::showDurationPressed() {
    toggle(PollingState::duration);
}

void CalibrationPanelView::toggle(PollingState measurement) {
    const PollingState old = velmorindal.pollingState.get();
    // A run that is only starting has no state yet; it counts as the measurement it was begun for.
    const bool starting = old == PollingState::none && velmorindal.bgIsProcessing;
    const PollingState running = starting ? begun_ : old;
    const PollingState wanted = running == measurement ? PollingState::none : measurement;
    print("Setting polling state from ", old, wanted);
    if (starting || old != PollingState::none) {
        velmorindal.stopPollingAndWait();
    }
    if (wanted == PollingState::none) {
        return;
    }
    begun_ = measurement;
    lastHum_ = 0.0;
    if (measurement == PollingState::clarity) {
        velmorindal.beginClarityPolling();
    } else {
        velmorindal.beginDurationPolling();
    }
}

int CalibrationPanelView::position(const Slider& slider) const {
    return slider.range.nearestPosition((velmorindal.*slider.threshold).get());
}

void CalibrationPanelView::moveSlider(const Slider& slider, int position) {
    if (position != this->position(slider)) {
        velmorindal.*slider.threshold = slider.range.valueAt(position);
    }
}

ProgressBar CalibrationPanelView::clarityBar() const {
    return readingBar(velmorindal.detectedClarity.get(), 1.0);
}

ProgressBar CalibrationPanelView::durationBar() const {
    return readingBar(shownDuration(), 3.0);
}

double CalibrationPanelView::shownDuration() const {
    const double duration = velmorindal.detectedDuration.get();
    const bool between = duration == 0.0 && velmorindal.pollingState.get() == PollingState::duration;
    return between ? lastHum_.load() : duration;
}

CalibrationPanelView::Indicator CalibrationPanelView::clarityIndicator() const {
    // In the precision of the threshold: the device reports 0.37 as the float just above it, for which a
    // threshold of 0.37 is reached.
    const bool reached = static_cast<float>(velmorindal.detectedClarity.get()) >= velmorindal.clarity.get();
    return {.accessibleName = "Clarity indicator",
            .text = "",
            .lit = reached,
            .description = reached ? "Above threshold" : "Below threshold"};
}

std::array<CalibrationPanelView::Indicator, 2> CalibrationPanelView::durationIndicators() const {
    const auto duration = static_cast<float>(shownDuration());
    const bool hummed = duration > 0.0F;
    const bool reachesCutoff = duration >= velmorindal.cutoff.get();
    const bool isShort = hummed && !reachesCutoff;
    const bool isLong = hummed && reachesCutoff;
    return {{{.accessibleName = "Duration indicator",
              .text = "Short hum",
              .lit = isShort,
              .description = isShort ? "Short hum: on" : "Short hum: off"},
             {.accessibleName = "Duration indicator",
              .text = "Long hum",
              .lit = isLong,
              .description = isLong ? "Long hum: on" : "Long hum: off"}}};
}

}  // namespace velmorindal
