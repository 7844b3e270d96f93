#include "CalibrationPanelView.h"

#include "WizardTest.h"

namespace velmorindal {
namespace {

using testing::Each;

class CalibrationPanelViewTest : public PanelTest {
  protected:
    CalibrationPanelView page{velmorindal};
};

TEST_F(CalibrationPanelViewTest, SaysWhereTheSensorBelongsWithAMisspellingAndExplainsBothSections) {
    EXPECT_EQ(CalibrationPanelView::title, "It's time to calibrate your Velmorindal");
    EXPECT_EQ(CalibrationPanelView::placement,
              "Please place the device on the user's neck, aligning hte sensor to their vocal cords.");

    EXPECT_EQ(CalibrationPanelView::clarityHeading, "Clarity:");
    EXPECT_EQ(
        CalibrationPanelView::clarityExplanation,
        "Adjust the slider to set the clarity threshold. Hums with a clarity level higher than the threshold "
        "will activate an output.\nPress \"Show Clarity\" and hum to see the clarity of the user's hums.");
    EXPECT_EQ(CalibrationPanelView::showClarityLabel, "Show Clarity");
    EXPECT_EQ(CalibrationPanelView::clarityBarName, "Clarity level");

    EXPECT_EQ(CalibrationPanelView::durationHeading, "Duration:");
    EXPECT_EQ(
        CalibrationPanelView::durationExplanation,
        "Adjust the slider to set the cutoff time between short and long hums.\nPress \"Show Duration\", "
        "then hum and wait. The bar will then show the duration of the last hum after you stop humming.");
    EXPECT_EQ(CalibrationPanelView::showDurationLabel, "Show Duration");
    EXPECT_EQ(CalibrationPanelView::durationBarName, "Duration of last hum");
}

TEST_F(CalibrationPanelViewTest, EachButtonIsDisabledWhileTheOtherMeasurementRuns) {
    velmorindal.pollingState = PollingState::none;
    EXPECT_TRUE(page.showClarityEnabled());
    EXPECT_TRUE(page.showDurationEnabled());

    velmorindal.pollingState = PollingState::clarity;
    EXPECT_TRUE(page.showClarityEnabled());
    EXPECT_FALSE(page.showDurationEnabled());

    velmorindal.pollingState = PollingState::duration;
    EXPECT_FALSE(page.showClarityEnabled());
    EXPECT_TRUE(page.showDurationEnabled());
}

TEST_F(CalibrationPanelViewTest, TheClaritySliderGoesFromZeroToOneInHundredths) {
    const auto& slider = CalibrationPanelView::claritySlider;

    EXPECT_EQ(slider.accessibleName, "Clarity threshold");
    EXPECT_DOUBLE_EQ(slider.range.minimum, 0.0);
    EXPECT_DOUBLE_EQ(slider.range.maximum, 1.0);
    EXPECT_DOUBLE_EQ(slider.range.step, 0.01);
    EXPECT_EQ(page.position(slider), 50);
    page.moveSlider(slider, 51);
    EXPECT_EQ(velmorindal.clarity.get(), 0.51F);
    page.moveSlider(slider, 1000);
    EXPECT_EQ(velmorindal.clarity.get(), 1.0F);
    page.moveSlider(slider, -1);
    EXPECT_EQ(velmorindal.clarity.get(), 0.0F);
    EXPECT_EQ(velmorindal.cutoff.get(), 1.5F);
}

TEST_F(CalibrationPanelViewTest, TheCutoffSliderGoesFromATenthToThreeSecondsInTwentieths) {
    const auto& slider = CalibrationPanelView::cutoffSlider;

    EXPECT_EQ(slider.accessibleName, "Cutoff");
    EXPECT_DOUBLE_EQ(slider.range.minimum, 0.1);
    EXPECT_DOUBLE_EQ(slider.range.maximum, 3.0);
    EXPECT_DOUBLE_EQ(slider.range.step, 0.05);
    EXPECT_EQ(page.position(slider), 28);
    page.moveSlider(slider, 29);
    EXPECT_EQ(velmorindal.cutoff.get(), 1.55F);
    page.moveSlider(slider, 1000);
    EXPECT_EQ(velmorindal.cutoff.get(), 3.0F);
    page.moveSlider(slider, -1);
    EXPECT_EQ(velmorindal.cutoff.get(), 0.1F);
    EXPECT_EQ(velmorindal.clarity.get(), 0.5F);
}

TEST_F(CalibrationPanelViewTest, AValueBesideTheStepsStaysAsItIsUntilTheSliderIsMoved) {
    const auto& slider = CalibrationPanelView::cutoffSlider;
    velmorindal.cutoff = 12.34F;

    EXPECT_EQ(page.position(slider), 58);
    page.moveSlider(slider, 58);
    EXPECT_EQ(velmorindal.cutoff.get(), 12.34F);

    page.moveSlider(slider, 57);
    EXPECT_EQ(velmorindal.cutoff.get(), 2.95F);
}

TEST_F(CalibrationPanelViewTest, TheBarsShowTheReadingsInBlueOnVeryLightGrey) {
    velmorindal.detectedClarity = 0.25;
    velmorindal.detectedDuration = 1.5;

    const ProgressBar clarity = page.clarityBar();
    const ProgressBar duration = page.durationBar();

    EXPECT_DOUBLE_EQ(clarity.value, 0.25);
    EXPECT_DOUBLE_EQ(clarity.maxValue, 1.0);
    EXPECT_DOUBLE_EQ(duration.value, 1.5);
    EXPECT_DOUBLE_EQ(duration.maxValue, 3.0);
    for (const ProgressBar& bar : {clarity, duration}) {
        EXPECT_TRUE(bar.backgroundEnabled);
        EXPECT_EQ(bar.backgroundColor, colors::veryLightGrey);
        EXPECT_EQ(bar.foregroundColor, colors::blue);
    }
}

TEST_F(CalibrationPanelViewTest, TheClarityIndicatorIsGreenFromTheThresholdUpwards) {
    velmorindal.clarity = 0.37F;

    velmorindal.detectedClarity = 0.36;
    EXPECT_FALSE(page.clarityIndicator().lit);
    EXPECT_EQ(page.clarityIndicator().color(), colors::grey);
    EXPECT_EQ(page.clarityIndicator().description, "Below threshold");

    velmorindal.detectedClarity = 0.38;
    EXPECT_TRUE(page.clarityIndicator().lit);
    EXPECT_EQ(page.clarityIndicator().color(), colors::green);
    EXPECT_EQ(page.clarityIndicator().description, "Above threshold");

    // A threshold of zero is reached without a hum.
    velmorindal.clarity = 0.0F;
    velmorindal.detectedClarity = 0.0;
    EXPECT_TRUE(page.clarityIndicator().lit);

    EXPECT_EQ(page.clarityIndicator().accessibleName, "Clarity indicator");
    EXPECT_EQ(page.clarityIndicator().text, "");
    EXPECT_EQ(CalibrationPanelView::Indicator::diameter, 20);
}

TEST_F(CalibrationPanelViewTest, ClarityIsComparedInThePrecisionOfTheThreshold) {
    velmorindal.clarity = 0.3F;

    // As a 64-bit number 0.3 is less than the 32-bit 0.3; as a 32-bit number it is the same.
    velmorindal.detectedClarity = 0.3;

    EXPECT_LT(velmorindal.detectedClarity.get(), static_cast<double>(velmorindal.clarity.get()));
    EXPECT_TRUE(page.clarityIndicator().lit);
}

TEST_F(CalibrationPanelViewTest, TheDurationIndicatorsShowWhatTheLastHumCountedAs) {
    struct Case {
        double duration;
        bool shortLit;
        bool longLit;
    };
    velmorindal.cutoff = 1.2F;
    // 1.2 as a 64-bit number is less than as a 32-bit one, but still counts as long.
    for (const Case& given : {Case{0.0, false, false}, Case{0.04, true, false}, Case{1.16, true, false},
                              Case{1.2, false, true}, Case{5.0, false, true}}) {
        velmorindal.detectedDuration = given.duration;

        const auto indicators = page.durationIndicators();

        EXPECT_EQ(indicators[0].lit, given.shortLit) << given.duration;
        EXPECT_EQ(indicators[0].description, given.shortLit ? "Short hum: on" : "Short hum: off");
        EXPECT_EQ(indicators[1].lit, given.longLit) << given.duration;
        EXPECT_EQ(indicators[1].description, given.longLit ? "Long hum: on" : "Long hum: off");
    }
    EXPECT_EQ(page.durationIndicators()[0].text, "Short hum");
    EXPECT_EQ(page.durationIndicators()[1].text, "Long hum");
    EXPECT_EQ(page.durationIndicators()[0].accessibleName, "Duration indicator");
    EXPECT_EQ(page.durationIndicators()[1].accessibleName, "Duration indicator");
}

TEST_F(CalibrationPanelViewTest, WithoutAHumNoDurationIndicatorIsLitEvenForACutoffOfZero) {
    velmorindal.cutoff = 0.0F;
    velmorindal.detectedDuration = 0.0;

    EXPECT_THAT(page.durationIndicators(),
                Each(testing::Field(&CalibrationPanelView::Indicator::lit, false)));
}

}  // namespace
}  // namespace velmorindal
