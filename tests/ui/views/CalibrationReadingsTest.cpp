#include "CalibrationReadings.h"

#include "CalibrationPanelView.h"
#include "WizardTest.h"

namespace velmorindal {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

class CalibrationReadingsTest : public PanelTest {
  protected:
    void arrives(Published<double>& property, double reading) {
        ++velmorindal.readingsReceived;
        property = reading;
    }
    void clarityArrives(double reading) { arrives(velmorindal.detectedClarity, reading); }
    void durationArrives(double reading) { arrives(velmorindal.detectedDuration, reading); }

    void passes(milliseconds time) { now_ += time; }

    CalibrationReadings::Time now_{};
    CalibrationPanelView page{velmorindal, [this] { return now_; }};
};

TEST_F(CalibrationReadingsTest, TheDurationBarFollowsTheReadingAndTheLastHumStaysBehindIt) {
    velmorindal.cutoff = 1.0F;
    velmorindal.pollingState = PollingState::duration;
    durationArrives(0.6);
    EXPECT_EQ(page.durationBar().value, 0.6);
    durationArrives(0.0);
    EXPECT_EQ(page.durationBar().value, 0.0);
    EXPECT_EQ(page.lastHum(), 0.6);
    EXPECT_TRUE(page.durationIndicators()[0].lit);
    EXPECT_EQ(page.durationIndicators()[0].reading, "0.60 s");
    EXPECT_EQ(page.durationIndicators()[1].reading, "");

    durationArrives(1.4);
    durationArrives(0.0);
    EXPECT_EQ(page.lastHum(), 1.4);
    EXPECT_TRUE(page.durationIndicators()[1].lit);
    EXPECT_EQ(page.durationIndicators()[1].reading, "1.40 s");

    velmorindal.pollingState = PollingState::none;
    EXPECT_EQ(page.lastHum(), 0.0);
    EXPECT_FALSE(page.durationIndicators()[1].lit);
    EXPECT_EQ(page.durationIndicators()[1].reading, "");
}

TEST_F(CalibrationReadingsTest, AHumOfAnEndedDisplayIsNotShownByTheNextOne) {
    durationArrives(0.6);
    durationArrives(0.0);
    velmorindal.pollingState = PollingState::duration;

    EXPECT_EQ(page.lastHum(), 0.0);
    EXPECT_FALSE(page.durationIndicators()[0].lit);
    EXPECT_THAT(page.takeHumsInWords(), IsEmpty());
}

TEST_F(CalibrationReadingsTest, EveryHumIsPutInWordsOnceAlsoTwoOfOneLengthBetweenTwoQuestions) {
    velmorindal.cutoff = 1.6F;
    velmorindal.pollingState = PollingState::duration;
    durationArrives(1.6);
    durationArrives(0.0);
    durationArrives(0.4);
    durationArrives(0.4);
    // No reading, though the old value is announced again.
    velmorindal.cutoff = 1.6F;

    EXPECT_THAT(page.takeHumsInWords(),
                ElementsAre("1.60 seconds, long", "0.40 seconds, short", "0.40 seconds, short"));
    EXPECT_THAT(page.takeHumsInWords(), IsEmpty());
}

TEST_F(CalibrationReadingsTest, AHumsClarityIsComparedWithTheThreshold) {
    velmorindal.clarity = 0.72F;
    velmorindal.pollingState = PollingState::clarity;
    for (const double reading : {0.05, static_cast<double>(0.72F), 0.05, 0.71, 0.05}) {
        clarityArrives(reading);
    }

    EXPECT_THAT(page.takeHumsInWords(),
                ElementsAre("0.72, above the threshold", "0.71, below the threshold"));
}

TEST_F(CalibrationReadingsTest, AHumThatTheEndOfADisplayCutOffIsNotTakenUpByTheNextOne) {
    velmorindal.pollingState = PollingState::clarity;
    clarityArrives(0.05);
    clarityArrives(0.8);
    EXPECT_THAT(page.takeHumsInWords(), IsEmpty());
    velmorindal.pollingState = PollingState::none;
    EXPECT_THAT(page.takeHumsInWords(), IsEmpty());

    velmorindal.pollingState = PollingState::clarity;
    clarityArrives(0.05);
    EXPECT_THAT(page.takeHumsInWords(), IsEmpty());
}

TEST_F(CalibrationReadingsTest, NumbersStandBesideSlidersAndIndicators) {
    velmorindal.clarity = 0.55F;
    velmorindal.cutoff = 1.0F;
    EXPECT_EQ(page.thresholdText(CalibrationPanelView::claritySlider), "0.55");
    EXPECT_EQ(page.thresholdText(CalibrationPanelView::cutoffSlider), "1.00 s");
    EXPECT_EQ(page.clarityIndicator().reading, "");

    velmorindal.pollingState = PollingState::clarity;
    clarityArrives(0.72);

    EXPECT_EQ(page.clarityIndicator().reading, "0.72");
}

TEST_F(CalibrationReadingsTest, AReadingBelowTheThresholdDoesNotLookAsIfItHadReachedIt) {
    velmorindal.clarity = 0.55F;
    velmorindal.cutoff = 1.005F;
    velmorindal.pollingState = PollingState::clarity;
    clarityArrives(0.05);
    EXPECT_EQ(page.clarityIndicator().reading, "0.05");
    clarityArrives(0.546);
    EXPECT_EQ(page.clarityIndicator().reading, "0.54");
    clarityArrives(0.05);
    EXPECT_THAT(page.takeHumsInWords(), ElementsAre("0.54, below the threshold"));
    clarityArrives(0.55);
    EXPECT_EQ(page.clarityIndicator().reading, "0.55");

    velmorindal.pollingState = PollingState::duration;
    ASSERT_EQ(page.thresholdText(CalibrationPanelView::cutoffSlider), "1.00 s");
    durationArrives(1.0);
    EXPECT_EQ(page.durationIndicators()[0].reading, "0.99 s");
    EXPECT_THAT(page.takeHumsInWords(), ElementsAre("0.99 seconds, short"));
    durationArrives(1.0045);
    EXPECT_TRUE(page.durationIndicators()[0].lit);
}

TEST_F(CalibrationReadingsTest, AReadingThatIsCutDoesNotComeBelowZero) {
    velmorindal.clarity = 0.004F;
    velmorindal.pollingState = PollingState::clarity;
    clarityArrives(0.001);
    EXPECT_EQ(page.clarityIndicator().reading, "0.00");
}

TEST_F(CalibrationReadingsTest, NoNumberStandsBesideTheIndicatorBeforeTheFirstReadingOfTheDisplay) {
    clarityArrives(0.9);
    velmorindal.pollingState = PollingState::clarity;
    EXPECT_EQ(page.clarityIndicator().reading, "");
    clarityArrives(0.0);
    EXPECT_EQ(page.clarityIndicator().reading, "0.00");

    velmorindal.pollingState = PollingState::none;
    EXPECT_EQ(page.clarityIndicator().reading, "");
    velmorindal.pollingState = PollingState::clarity;
    EXPECT_EQ(page.clarityIndicator().reading, "");
}

TEST_F(CalibrationReadingsTest, ReadingsAreStaleAfterTwoSecondsWithoutOneWhileADisplayRuns) {
    passes(milliseconds{10'000});
    EXPECT_FALSE(page.readingsAreStale());
    EXPECT_EQ(page.untilNextLook(), std::nullopt);

    velmorindal.pollingState = PollingState::clarity;
    EXPECT_EQ(page.untilNextLook(), milliseconds{2001});
    passes(milliseconds{2000});
    EXPECT_FALSE(page.readingsAreStale());
    passes(milliseconds{1});
    EXPECT_TRUE(page.readingsAreStale());
    EXPECT_EQ(page.untilNextLook(), std::nullopt);

    clarityArrives(0.9);
    EXPECT_FALSE(page.readingsAreStale());
    passes(milliseconds{1500});
    // An equal value is a reading too; a slider that is moved is none.
    clarityArrives(0.9);
    passes(milliseconds{1500});
    EXPECT_FALSE(page.readingsAreStale());
    velmorindal.cutoff = 2.0F;
    passes(milliseconds{501});
    EXPECT_TRUE(page.readingsAreStale());

    velmorindal.pollingState = PollingState::none;
    EXPECT_FALSE(page.readingsAreStale());
}

TEST_F(CalibrationReadingsTest, StaleReadingsKeepTheirValueAndAreDrawnMuted) {
    velmorindal.pollingState = PollingState::clarity;
    clarityArrives(0.9);
    EXPECT_EQ(page.clarityBar().foregroundColor, colors::blue);
    EXPECT_EQ(page.clarityIndicator().color(), colors::green);

    passes(milliseconds{2001});

    EXPECT_EQ(page.clarityBar().value, 0.9);
    EXPECT_EQ(page.clarityBar().foregroundColor, colors::grey);
    EXPECT_TRUE(page.clarityIndicator().lit);
    EXPECT_TRUE(page.clarityIndicator().muted);
    EXPECT_EQ(page.clarityIndicator().color(), colors::grey);
}

}  // namespace
}  // namespace velmorindal
