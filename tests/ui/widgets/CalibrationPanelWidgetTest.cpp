#include "ui/widgets/CalibrationPanelWidget.h"

#include <QStyleOptionSlider>

#include "ui/widgets/IndicatorWidget.h"
#include "ui/widgets/ProgressBarWidget.h"
#include "ui/widgets/StepSlider.h"
#include "ui/widgets/WindowTest.h"

namespace velmorindal {
namespace {

class CalibrationPanelWidgetTest : public WindowTest {
  protected:
    void SetUp() override {
        WindowTest::SetUp();
        show(wizardState::Calibration);
    }

    StepSlider* clarity() { return find<StepSlider>(QStringLiteral("Clarity threshold")); }
    StepSlider* cutoff() { return find<StepSlider>(QStringLiteral("Cutoff")); }
    QPushButton* showClarity() { return find<QPushButton>(QStringLiteral("Show Clarity")); }
    QPushButton* showDuration() { return find<QPushButton>(QStringLiteral("Show Duration")); }
};

TEST_F(CalibrationPanelWidgetTest, ArrowKeysMoveASliderByOneStepAndPageKeysByTen) {
    QTest::keyClick(clarity(), Qt::Key_Right);
    EXPECT_FLOAT_EQ(velmorindal.clarity.get(), 0.51F);
    QTest::keyClick(clarity(), Qt::Key_PageUp);
    EXPECT_FLOAT_EQ(velmorindal.clarity.get(), 0.61F);

    QTest::keyClick(cutoff(), Qt::Key_Left);
    EXPECT_FLOAT_EQ(velmorindal.cutoff.get(), 1.45F);
    QTest::keyClick(cutoff(), Qt::Key_PageDown);
    EXPECT_FLOAT_EQ(velmorindal.cutoff.get(), 0.95F);
}

TEST_F(CalibrationPanelWidgetTest, TheSlidersStayInsideTheirRanges) {
    QTest::keyClick(clarity(), Qt::Key_End);
    QTest::keyClick(clarity(), Qt::Key_Right);
    EXPECT_FLOAT_EQ(velmorindal.clarity.get(), 1.0F);

    QTest::keyClick(cutoff(), Qt::Key_Home);
    QTest::keyClick(cutoff(), Qt::Key_Left);
    EXPECT_FLOAT_EQ(velmorindal.cutoff.get(), 0.1F);
}

TEST_F(CalibrationPanelWidgetTest, AValueBetweenTwoStepsIsKeptUntilTheUserMovesTheSlider) {
    velmorindal.clarity = 0.3749F;
    settle();
    EXPECT_EQ(clarity()->value(), 37);
    EXPECT_EQ(velmorindal.clarity.get(), 0.3749F);

    QTest::keyClick(clarity(), Qt::Key_Right);

    EXPECT_FLOAT_EQ(velmorindal.clarity.get(), 0.38F);
}

TEST_F(CalibrationPanelWidgetTest, EachShowButtonIsDisabledWhileTheOtherMeasurementRuns) {
    velmorindal.pollingState = PollingState::clarity;
    settle();
    EXPECT_TRUE(showClarity()->isEnabled());
    EXPECT_FALSE(showDuration()->isEnabled());

    velmorindal.pollingState = PollingState::duration;
    settle();
    EXPECT_FALSE(showClarity()->isEnabled());
    EXPECT_TRUE(showDuration()->isEnabled());
}

TEST_F(CalibrationPanelWidgetTest, NoNavigationButtonIsThereWhileAMeasurementRuns) {
    velmorindal.pollingState = PollingState::clarity;
    settle();

    EXPECT_TRUE(navigation().isEmpty());
}

TEST_F(CalibrationPanelWidgetTest, TheBarsShowTheReadings) {
    velmorindal.detectedClarity = 0.25;
    velmorindal.detectedDuration = 6.0;
    settle();

    EXPECT_EQ(find<ProgressBarWidget>(QStringLiteral("Clarity level"))->targetFraction(), 0.25);
    EXPECT_EQ(find<ProgressBarWidget>(QStringLiteral("Duration of last hum"))->targetFraction(), 1.0);
}

TEST_F(CalibrationPanelWidgetTest, TheIndicatorSaysItsStateInWordsAndInItsShape) {
    auto* indicator = find<IndicatorWidget>(QStringLiteral("Clarity indicator"));
    ASSERT_NE(indicator, nullptr);
    const QString dark = indicator->accessibleDescription();
    const QImage darkPicture = indicator->grab().toImage();

    velmorindal.detectedClarity = 0.9;
    settle();

    EXPECT_FALSE(dark.isEmpty());
    EXPECT_NE(indicator->accessibleDescription(), dark);
    const QColor white{Qt::white};
    const auto whitePixels = [&white](const QImage& picture) {
        int count = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                count += picture.pixelColor(x, y) == white ? 1 : 0;
            }
        }
        return count;
    };
    EXPECT_EQ(whitePixels(darkPicture), 0);
    EXPECT_GT(whitePixels(indicator->grab().toImage()), 0);
}

TEST_F(CalibrationPanelWidgetTest, TheHandleStandsAboveTheReadingThatEqualsTheThreshold) {
    const auto handleCenter = [](StepSlider* slider) {
        QStyleOptionSlider option;
        option.initFrom(slider);
        option.minimum = slider->minimum();
        option.maximum = slider->maximum();
        option.sliderPosition = slider->value();
        const QRect handle =
            slider->style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, slider);
        return slider->mapTo(slider->window(), handle.center()).x();
    };
    velmorindal.cutoff = 0.6F;
    velmorindal.detectedDuration = 0.6;
    settle();

    auto* bar = find<ProgressBarWidget>(QStringLiteral("Duration of last hum"));
    const double fillEnd = bar->mapTo(bar->window(), QPoint{0, 0}).x() + bar->targetFraction() * bar->width();

    EXPECT_NEAR(handleCenter(cutoff()), fillEnd, 2.0);
}

}  // namespace
}  // namespace velmorindal
