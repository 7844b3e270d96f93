#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "CalibrationReadings.h"
#include "Color.h"
#include "ProgressBar.h"
#include "Published.h"
#include "SessionStates.h"
#include "SliderRange.h"
#include "VelmorindalSwitch.h"

namespace velmorindal {

/// The fifth page: the two thresholds, and live readings to set them by. Main thread only.
///
/// The sliders write into the model at once. A value that lies between two steps or outside the range (a
/// settings file may hold one) is shown at the nearest position and stays as it is until the user moves the
/// slider.
class CalibrationPanelView {
  public:
    /// A filled circle 20 points across.
    struct Indicator {
        std::string_view accessibleName;
        /// The text beside it; empty where there is none.
        std::string_view text;
        bool lit;
        /// The state in words, for people who cannot see the colour.
        std::string_view description;
        /// The reading beside it, with its unit; empty where there is none.
        std::string reading;
        /// Not live: readings have stopped coming.
        bool muted = false;

        static constexpr int diameter = 20;
        Color color() const;
    };

    /// A slider and the threshold of the model that it is bound to.
    struct Slider {
        std::string_view accessibleName;
        SliderRange range;
        Published<float> VelmorindalSwitch::*threshold;
        /// Follows the number; empty for a threshold without a unit.
        std::string_view unit;
        /// The unit in full, for a screen reader.
        std::string_view spokenUnit;
    };

    /// `clock` measures how old a reading is.
    explicit CalibrationPanelView(VelmorindalSwitch& model,
                                  CalibrationReadings::Clock clock = std::chrono::steady_clock::now);

    VelmorindalSwitch& velmorindal;

    /// In the larger font.
    static constexpr std::string_view title = "It's time to calibrate your Velmorindal";
    /// "hte" is meant to be spelled so.
    static constexpr std::string_view placement =
        "Please place the device on the user's neck, aligning hte sensor to their vocal cords.";

    /// In the smaller font.
    static constexpr std::string_view clarityHeading = "Clarity:";
    static constexpr std::string_view clarityExplanation =
        "Adjust the slider to set the clarity threshold. Hums with a clarity level higher than the threshold "
        "will activate an output.\nPress \"Show Clarity\" and hum to see the clarity of the user's hums.";
    static constexpr std::string_view showClarityLabel = "Show Clarity";
    static constexpr Slider claritySlider{.accessibleName = "Clarity threshold",
                                          .range = {.minimum = 0.0, .maximum = 1.0, .step = 0.01},
                                          .threshold = &VelmorindalSwitch::clarity,
                                          .unit = "",
                                          .spokenUnit = ""};
    static constexpr std::string_view clarityBarName = "Clarity level";

    /// In the smaller font.
    static constexpr std::string_view durationHeading = "Duration:";
    static constexpr std::string_view durationExplanation =
        "Adjust the slider to set the cutoff time between short and long hums.\nPress \"Show Duration\", "
        "then hum and wait. The bar will then show the duration of the last hum after you stop humming.";
    static constexpr std::string_view showDurationLabel = "Show Duration";
    /// In seconds.
    static constexpr Slider cutoffSlider{.accessibleName = "Cutoff",
                                         .range = {.minimum = 0.1, .maximum = 3.0, .step = 0.05},
                                         .threshold = &VelmorindalSwitch::cutoff,
                                         .unit = " s",
                                         .spokenUnit = "seconds"};
    static constexpr std::string_view durationBarName = "Duration of last hum";

    /// Beside the readings while they do not come.
    static constexpr std::string_view staleReadingsText =
        "No readings are arriving. Check that the dongle is plugged in and the Velmorindal is turned on.";

    /// In the same place, when a display has ended unasked, most often because the device did not let it
    /// start.
    static constexpr std::string_view couldNotStartText =
        "The display could not start. Check that the dongle is plugged in and the Velmorindal is turned on.";

    bool showClarityEnabled() const;
    bool showDurationEnabled() const;

    /// Starts the display of one measurement, or stops it where it runs or is only just starting. A run of
    /// the other kind is stopped first. Blocks until a run that is stopped has wound down.
    void showClarityPressed();
    void showDurationPressed();
    /// Stops a run, also one that is only starting, and waits until it has wound down.
    void stop();

    /// The position at which a slider stands.
    int position(const Slider& slider) const;
    /// The threshold as it is, with its unit: "0.55", "1.00 s".
    std::string thresholdText(const Slider& slider) const;
    /// The user has moved a slider. Does nothing at the position where the slider stands already.
    void moveSlider(const Slider& slider, int position);

    ProgressBar clarityBar() const;
    /// In seconds.
    ProgressBar durationBar() const;
    /// A device reports each hum once, and zero after it. The last hum in seconds stays behind the duration
    /// bar as a paler fill until the next one or the end of the display; 0 where there is none.
    double lastHum() const;

    /// Whether a display runs and readings have stopped coming: what is shown is not live.
    bool readingsAreStale() const { return readings_.stale(); }
    /// Which of the two texts stands beside the button of a measurement; empty for none.
    std::string_view troubleWith(PollingState measurement) const;
    /// The same for whichever measurement has one.
    std::string_view trouble() const;
    /// How many runs have been begun.
    std::uint64_t runsBegun() const { return runsBegun_; }
    /// When to ask again, if nothing else happens.
    std::optional<std::chrono::milliseconds> untilNextLook() const;

    /// What each hum that has ended since the last call came to: "1.60 seconds, long".
    std::vector<std::string> takeHumsInWords();

    /// Lit while the clarity measured reaches the threshold.
    Indicator clarityIndicator() const;
    /// Which kind the last hum counted as: short, long. Neither is lit before the first hum.
    std::array<Indicator, 2> durationIndicators() const;

  private:
    void toggle(PollingState measurement);
    bool isStarting() const;
    /// The run begun last is over, and the user has not stopped it.
    bool endedUnasked() const;
    /// What the last hum counts as, and how long it was.
    double heardDuration() const;

    /// The measurement begun last and not stopped: a run that is only starting has not set the model's
    /// `pollingState` yet.
    PollingState begun_ = PollingState::none;
    std::uint64_t runsBegun_ = 0;
    /// Asking it makes it take in what has come meanwhile.
    mutable CalibrationReadings readings_;
};

}  // namespace velmorindal
