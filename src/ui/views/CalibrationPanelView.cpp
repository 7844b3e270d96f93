#include "CalibrationPanelView.h"

#include <algorithm>
#include <utility>

#include "Print.h"
#include "TwoDecimals.h"

namespace velmorindal {
namespace {

ProgressBar readingBar(double value, double maximum, bool muted) {
    return {.value = value,
            .maxValue = maximum,
            .backgroundEnabled = true,
            .backgroundColor = colors::veryLightGrey,
            .foregroundColor = muted ? colors::grey : colors::blue};
}

/// Rounded to two decimals, but 0.01 less where a reading below the threshold would look equal to it.
std::string number(double value, float threshold) {
    constexpr float step = 0.01F;
    const auto reading = static_cast<float>(value);
    std::string text = twoDecimals(reading);
    if (reading < threshold && text == twoDecimals(threshold)) {
        return twoDecimals(std::max(reading - step, 0.0F));
    }
    return text;
}

}  // namespace

Color CalibrationPanelView::Indicator::color() const {
    return lit && !muted ? colors::green : colors::grey;
}

CalibrationPanelView::CalibrationPanelView(VelmorindalSwitch& model, CalibrationReadings::Clock clock)
    : velmorindal{model}, readings_{model, std::move(clock)} {}

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
    // A run that is only starting counts as its measurement.
    const PollingState running = isStarting() ? begun_ : old;
    const PollingState wanted = running == measurement ? PollingState::none : measurement;
    print("Setting polling state from ", old, wanted);
    stop();
    if (wanted == PollingState::none) {
        return;
    }
    begun_ = measurement;
    ++runsBegun_;
    if (measurement == PollingState::clarity) {
        velmorindal.beginClarityPolling();
    } else {
        velmorindal.beginDurationPolling();
    }
    // The run announces nothing yet, and may never do so.
    velmorindal.objectWillChange.announce();
}

void CalibrationPanelView::stop() {
    begun_ = PollingState::none;
    velmorindal.stopPollingAndWait();
}

bool CalibrationPanelView::isStarting() const {
    // A run that is only starting has set bgIsProcessing, but no polling state yet.
    return velmorindal.pollingState.get() == PollingState::none && velmorindal.bgIsProcessing;
}

bool CalibrationPanelView::endedUnasked() const {
    return begun_ != PollingState::none && velmorindal.pollingState.get() == PollingState::none &&
           !velmorindal.bgIsProcessing;
}

std::string_view CalibrationPanelView::trouble() const {
    if (endedUnasked()) {
        return couldNotStartText;
    }
    return readingsAreStale() ? staleReadingsText : std::string_view{};
}

std::string_view CalibrationPanelView::troubleWith(PollingState measurement) const {
    const PollingState shown = endedUnasked() ? begun_ : velmorindal.pollingState.get();
    return measurement == shown ? trouble() : std::string_view{};
}

std::optional<std::chrono::milliseconds> CalibrationPanelView::untilNextLook() const {
    // A run that ends before it has a state announces nothing.
    constexpr std::chrono::milliseconds whileStarting{100};
    return isStarting() ? whileStarting : readings_.untilStale();
}

int CalibrationPanelView::position(const Slider& slider) const {
    return slider.range.nearestPosition((velmorindal.*slider.threshold).get());
}

std::string CalibrationPanelView::thresholdText(const Slider& slider) const {
    return twoDecimals((velmorindal.*slider.threshold).get()) + std::string{slider.unit};
}

void CalibrationPanelView::moveSlider(const Slider& slider, int position) {
    if (position != this->position(slider)) {
        velmorindal.*slider.threshold = slider.range.valueAt(position);
    }
}

ProgressBar CalibrationPanelView::clarityBar() const {
    return readingBar(velmorindal.detectedClarity.get(), 1.0, readingsAreStale());
}

ProgressBar CalibrationPanelView::durationBar() const {
    return readingBar(velmorindal.detectedDuration.get(), 3.0, readingsAreStale());
}

double CalibrationPanelView::lastHum() const {
    return readings_.lastHum();
}

double CalibrationPanelView::heardDuration() const {
    const double duration = velmorindal.detectedDuration.get();
    return duration > 0.0 ? duration : lastHum();
}

std::vector<std::string> CalibrationPanelView::takeHumsInWords() {
    std::vector<std::string> words;
    for (const CalibrationReadings::Hum& hum : readings_.takeHums()) {
        const auto value = static_cast<float>(hum.value);
        if (hum.measurement == PollingState::clarity) {
            words.push_back(number(hum.value, velmorindal.clarity.get()) + (value >= velmorindal.clarity.get()
                                                                                ? ", above the threshold"
                                                                                : ", below the threshold"));
        } else {
            words.push_back(number(hum.value, velmorindal.cutoff.get()) + " seconds, " +
                            (value >= velmorindal.cutoff.get() ? "long" : "short"));
        }
    }
    return words;
}

CalibrationPanelView::Indicator CalibrationPanelView::clarityIndicator() const {
    // Compared as floats, the type of the threshold: a reported 0.37 reaches a threshold of 0.37.
    const bool reached = static_cast<float>(velmorindal.detectedClarity.get()) >= velmorindal.clarity.get();
    return {.accessibleName = "Clarity indicator",
            .text = "",
            .lit = reached,
            .description = reached ? "Above threshold" : "Below threshold",
            .reading = velmorindal.pollingState.get() == PollingState::clarity && readings_.anyReading()
                           ? number(velmorindal.detectedClarity.get(), velmorindal.clarity.get())
                           : "",
            .muted = readingsAreStale()};
}

std::array<CalibrationPanelView::Indicator, 2> CalibrationPanelView::durationIndicators() const {
    const auto duration = static_cast<float>(heardDuration());
    const bool hummed = duration > 0.0F;
    const bool reachesCutoff = duration >= velmorindal.cutoff.get();
    const bool isShort = hummed && !reachesCutoff;
    const bool isLong = hummed && reachesCutoff;
    const std::string reading = number(heardDuration(), velmorindal.cutoff.get()) + " s";
    const bool muted = readingsAreStale();
    return {{{.accessibleName = "Duration indicator",
              .text = "Short hum",
              .lit = isShort,
              .description = isShort ? "Short hum: on" : "Short hum: off",
              .reading = isShort ? reading : "",
              .muted = muted},
             {.accessibleName = "Duration indicator",
              .text = "Long hum",
              .lit = isLong,
              .description = isLong ? "Long hum: on" : "Long hum: off",
              .reading = isLong ? reading : "",
              .muted = muted}}};
}

}  // namespace velmorindal
