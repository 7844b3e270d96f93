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

/// The fifth page: the two thresholds, and live readings to help set them. Main thread only.
///
/// The sliders change the model at once. A value between two steps or outside the range, which a settings
/// file may have, is shown at the nearest position and does not change until the user moves the slider.
class CalibrationPanelView {
  public:
    /// A filled circle, 20 device-independent pixels across.
    struct Indicator {
        std::string_view accessibleName;
        /// The text beside it; may be empty.
        std::string_view text;
        bool lit;
        /// The state in words, for people who cannot see the colour.
        std::string_view description;
        /// The reading beside it, with its unit; may be empty.
        std::string reading;
        /// Not live: readings have stopped arriving.
        bool muted = false;

        static constexpr int diameter = 20;
        /// Green while lit and live, otherwise grey.
        Color color() const;
    };

    /// A slider and the threshold of the model that it is bound to.
    struct Slider {
        std::string_view accessibleName;
        SliderRange range;
        Published<float> VelmorindalSwitch::*threshold;
        /// Printed after the number; empty for a threshold without a unit.
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
    /// "hte" is misspelled on purpose.
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

    /// Shown beside the Show button while readings have stopped arriving.
    static constexpr std::string_view staleReadingsText =
        "No readings are arriving. Check that the dongle is plugged in and the Velmorindal is turned on.";

    /// Shown in the same place when a display has ended by itself, usually because the device did not
    /// start it.
    static constexpr std::string_view couldNotStartText =
        "The display could not start. Check that the dongle is plugged in and the Velmorindal is turned on.";

    /// Whether the Show buttons can be pressed: not while the other display runs.
    bool showClarityEnabled() const;
    bool showDurationEnabled() const;

    /// Starts the display of one measurement, or stops it if it runs or is starting. First stops a run of the
    /// other kind. Blocks until a stopped run has ended.
    void showClarityPressed();
    void showDurationPressed();
    /// Stops a run, also one that is only starting, and blocks until it has ended.
    void stop();

    /// The position of a slider, from 0.
    int position(const Slider& slider) const;
    /// The exact threshold with its unit: "0.55", "1.00 s".
    std::string thresholdText(const Slider& slider) const;
    /// The user has moved a slider. Does nothing if that is its present position.
    void moveSlider(const Slider& slider, int position);

    /// The clarity reported last, 0 to 1.
    ProgressBar clarityBar() const;
    /// The duration reported last, 0 to 3 seconds.
    ProgressBar durationBar() const;
    /// The last hum in seconds, 0 if there is none. A device reports each hum once, and zero after it, so
    /// this is shown behind the duration bar as a paler fill until the next hum or the end of the display.
    double lastHum() const;

    /// Whether a display runs and readings have stopped arriving: what is shown is not live.
    bool readingsAreStale() const { return readings_.stale(); }
    /// Which of the two texts is shown beside the button of a measurement; empty for none.
    std::string_view troubleWith(PollingState measurement) const;
    /// The text that is shown for either measurement; empty for none.
    std::string_view trouble() const;
    /// How many runs have been started.
    std::uint64_t runsBegun() const { return runsBegun_; }
    /// After what time to refresh the page, if nothing else happens; nothing if that is not needed.
    std::optional<std::chrono::milliseconds> untilNextLook() const;

    /// The hums that have ended since the last call, in words: "1.60 seconds, long".
    std::vector<std::string> takeHumsInWords();

    /// Lit while the measured clarity reaches the threshold.
    Indicator clarityIndicator() const;
    /// For short and for long hums: lit if the last hum was of that kind. Neither is lit before the
    /// first hum.
    std::array<Indicator, 2> durationIndicators() const;

  private:
    void toggle(PollingState measurement);
    bool isStarting() const;
    /// The run started last has ended, and the user has not stopped it.
    bool endedUnasked() const;
    /// The duration reported now, or the last hum if that is 0; in seconds.
    double heardDuration() const;

    /// The measurement started last and not stopped: a run that is only starting has not set the model's
    /// `pollingState` yet.
    PollingState begun_ = PollingState::none;
    std::uint64_t runsBegun_ = 0;
    /// Mutable, since its questions first process the latest reading.
    mutable CalibrationReadings readings_;
};

}  // namespace velmorindal
