#include "CalibrationPanelWidget.h"

#include <QStyleOptionSlider>
#include <QWheelEvent>

#include "IndicatorWidget.h"
#include "Pixels.h"
#include "ProgressBarWidget.h"
#include "StepSlider.h"
#include "WindowTest.h"

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
    QPushButton* showDuration() { return find<QPushButton>(QStringLiteral("Show Duration")); }
    IndicatorWidget* indicatorOf(const char* hum) {
        for (auto* indicator : window().findChildren<IndicatorWidget*>()) {
            if (indicator->accessibleDescription().startsWith(QString::fromLatin1(hum))) {
                return indicator;
            }
        }
        return nullptr;
    }

    /// A tick is what an indicator has in white.
    static bool showsTick(IndicatorWidget& indicator) {
        return hasPixel(indicator.grab().toImage(),
                        [](const QColor& color) { return color == QColor{Qt::white}; });
    }

    static void turnTheWheelOver(QWidget& control, int distance) {
        QWheelEvent wheel{QPointF{control.rect().center()},
                          control.mapToGlobal(QPointF{control.rect().center()}),
                          {0, distance},
                          {0, distance},
                          Qt::NoButton,
                          Qt::NoModifier,
                          Qt::NoScrollPhase,
                          false};
        QApplication::sendEvent(&control, &wheel);
    }
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

TEST_F(CalibrationPanelWidgetTest, AValueBetweenTwoStepsIsKeptUntilTheUserMovesTheSlider) {
    velmorindal.clarity = 0.3749F;
    settle();
    EXPECT_EQ(clarity()->value(), 37);
    EXPECT_EQ(velmorindal.clarity.get(), 0.3749F);

    QTest::keyClick(clarity(), Qt::Key_Right);

    EXPECT_FLOAT_EQ(velmorindal.clarity.get(), 0.38F);
}

TEST_F(CalibrationPanelWidgetTest, ADisplayThatCouldNotStartIsReportedBesideItsButton) {
    const auto text = QString::fromUtf8(CalibrationPanelView::couldNotStartText);
    EXPECT_FALSE(showsText(text));

    // There is no dongle, and nothing announces the end.
    press(QStringLiteral("Show Duration"));
    dispatch.waitForBackground();
    ASSERT_TRUE(eventually([&] { return showsText(text); }));

    EXPECT_GE(find<QLabel>(text)->geometry().bottom(), showDuration()->geometry().top());
}

TEST_F(CalibrationPanelWidgetTest, TheFocusOfAButtonThatGoesIsOnTheShowButtonThatIsEnabled) {
    find<QPushButton>(QStringLiteral("Next"))->setFocus();
    velmorindal.pollingState = PollingState::duration;
    settle();
    EXPECT_EQ(window().focusWidget(), showDuration());
    EXPECT_FALSE(find<QPushButton>(QStringLiteral("Show Clarity"))->isEnabled());
}

TEST_F(CalibrationPanelWidgetTest, TheLastHumStaysBehindTheDurationBar) {
    velmorindal.pollingState = PollingState::duration;
    for (const double reading : {1.5, 0.0}) {
        ++velmorindal.readingsReceived;
        velmorindal.detectedDuration = reading;
        settle();
    }
    EXPECT_EQ(find<ProgressBarWidget>(QStringLiteral("Duration of last hum"))->traceFraction(), 0.5);
}

TEST_F(CalibrationPanelWidgetTest, NoEmptyTextIsThereForAScreenReader) {
    for (const auto* label : window().findChildren<QLabel*>()) {
        EXPECT_FALSE(label->isVisible() && label->text().isEmpty());
    }
}

TEST_F(CalibrationPanelWidgetTest, AReadingIsNoWiderThanTheRoomKeptForIt) {
    velmorindal.pollingState = PollingState::clarity;
    ++velmorindal.readingsReceived;
    velmorindal.detectedClarity = 0.87;
    settle();
    const auto* const reading = find<QLabel>(QStringLiteral("0.87"));
    ASSERT_NE(reading, nullptr);
    EXPECT_EQ(reading->width(), reading->sizeHint().width());
}

TEST_F(CalibrationPanelWidgetTest, OnlyAnIndicatorThatIsLitCarriesATick) {
    auto* const ofClarity = find<IndicatorWidget>(QStringLiteral("Clarity indicator"));
    EXPECT_FALSE(showsTick(*ofClarity));
    velmorindal.detectedClarity = 0.9;
    settle();
    EXPECT_TRUE(showsTick(*ofClarity));
    EXPECT_EQ(ofClarity->accessibleDescription(), QStringLiteral("Above threshold"));

    IndicatorWidget* const shortHum = indicatorOf("Short hum");
    IndicatorWidget* const longHum = indicatorOf("Long hum");
    ASSERT_NE(shortHum, nullptr);
    ASSERT_NE(longHum, nullptr);
    velmorindal.cutoff = 1.0F;
    settle();
    EXPECT_FALSE(showsTick(*shortHum));
    EXPECT_FALSE(showsTick(*longHum));

    velmorindal.detectedDuration = 0.5;
    settle();
    EXPECT_TRUE(showsTick(*shortHum));
    EXPECT_FALSE(showsTick(*longHum));

    velmorindal.detectedDuration = 1.0;
    settle();
    EXPECT_FALSE(showsTick(*shortHum));
    EXPECT_TRUE(showsTick(*longHum));
}

TEST_F(CalibrationPanelWidgetTest, TheWheelOverASliderDoesNotMoveIt) {
    for (StepSlider* slider : {clarity(), cutoff()}) {
        slider->setFocus();
        turnTheWheelOver(*slider, 120);
        turnTheWheelOver(*slider, 120);
        turnTheWheelOver(*slider, -120);
    }

    EXPECT_EQ(velmorindal.clarity.get(), 0.5F);
    EXPECT_EQ(velmorindal.cutoff.get(), 1.5F);
    // Nor does it move the focus there.
    EXPECT_EQ(clarity()->focusPolicy(), Qt::StrongFocus);
}

TEST_F(CalibrationPanelWidgetTest, AThresholdFollowsASliderThatIsStillHeld) {
    clarity()->setSliderDown(true);

    clarity()->setSliderPosition(60);

    EXPECT_FLOAT_EQ(velmorindal.clarity.get(), 0.6F);
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
