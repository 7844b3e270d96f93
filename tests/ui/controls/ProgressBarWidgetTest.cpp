#include "ProgressBarWidget.h"

#include <gmock/gmock.h>

#include <QAnimationDriver>
#include <QImage>
#include <QProxyStyle>
#include <QTest>
#include <limits>

#include "ToQt.h"

namespace velmorindal {
namespace {

ProgressBar barAt(double value, double maxValue = 1.0) {
    return {.value = value,
            .maxValue = maxValue,
            .backgroundEnabled = true,
            .backgroundColor = colors::veryLightGrey,
            .foregroundColor = colors::green};
}

/// The clock and the frames of all animations, in the hands of a test.
class Frames final : public QAnimationDriver {
  public:
    Frames() { install(); }

    /// Lets time pass, calls `justBefore`, and shows the next frame.
    template <typename Action>
    void pass(int milliseconds, Action justBefore) {
        // The toolkit registers a new animation on the next turn of the event loop.
        QCoreApplication::processEvents();
        elapsed_ += milliseconds;
        justBefore();
        advance();
    }
    qint64 elapsed() const override { return elapsed_; }

  private:
    qint64 elapsed_ = 0;
};

class ProgressBarWidgetTest : public testing::Test {
  protected:
    ProgressBarWidgetTest() { widget.resize(200, 12); }

    QImage picture() { return widget.grab().toImage(); }

    /// How many pixels along the middle line have the colour of the fill.
    int filledPixels() {
        const QImage line = picture().copy(0, widget.height() / 2, widget.width(), 1);
        int count = 0;
        for (int x = 0; x < line.width(); ++x) {
            const QColor pixel = line.pixelColor(x, 0);
            count += pixel.green() > 120 && pixel.red() < 60 ? 1 : 0;
        }
        return count;
    }

    ProgressBarWidget widget{QStringLiteral("Clarity level")};
};

TEST_F(ProgressBarWidgetTest, TheLastValueStaysBehindAsAPalerFill) {
    widget.setBar(barAt(0.25), 0.75);

    EXPECT_EQ(widget.targetFraction(), 0.25);
    EXPECT_EQ(widget.traceFraction(), 0.75);
    const QImage drawn = picture();
    const QColor fill = drawn.pixelColor(30, 6);
    const QColor trace = drawn.pixelColor(120, 6);
    const QColor track = drawn.pixelColor(180, 6);
    EXPECT_LT(fill.lightness(), trace.lightness());
    EXPECT_LT(trace.lightness(), track.lightness());

    widget.setBar(barAt(0.25), 0.5);

    EXPECT_EQ(widget.traceFraction(), 0.5);
}

TEST_F(ProgressBarWidgetTest, TheFillTakesItsPartOfTheTrack) {
    widget.setBar(barAt(2.0, 5.0));

    EXPECT_NEAR(filledPixels(), 80, 4);
}

TEST_F(ProgressBarWidgetTest, ANegativeValueAndWhatIsNotANumberFillNothing) {
    for (const double value : {-1.0, std::numeric_limits<double>::quiet_NaN()}) {
        widget.setBar(barAt(value));
        EXPECT_EQ(widget.targetFraction(), 0.0);
        EXPECT_EQ(filledPixels(), 0);
    }
}

TEST_F(ProgressBarWidgetTest, ASmallFillStaysInsideTheRoundedEndOfTheTrack) {
    widget.resize(200, 40);
    widget.setBar(barAt(0.03));

    const QImage drawn = picture();

    const QColor corner = drawn.pixelColor(1, 1);
    EXPECT_EQ(corner, widget.palette().color(QPalette::Window));
    EXPECT_GT(filledPixels(), 0);
}

TEST_F(ProgressBarWidgetTest, TheTrackHasTheColorOfItsBackgroundAndIsDrawnOnlyWhereItIsEnabled) {
    ProgressBar bar = barAt(0.0);
    widget.setBar(bar);
    EXPECT_EQ(picture().pixelColor(100, 6).rgb(), toQColor(colors::veryLightGrey).rgb());

    bar.backgroundEnabled = false;
    widget.setBar(bar);
    EXPECT_EQ(picture().pixelColor(100, 6), widget.palette().color(QPalette::Window));
}

TEST_F(ProgressBarWidgetTest, TheFillIsRoundAtItsEndToo) {
    widget.resize(200, 40);

    widget.setBar(barAt(0.5));

    const QImage drawn = picture();
    EXPECT_EQ(drawn.pixelColor(97, 20).rgb(), toQColor(colors::green).rgb());
    EXPECT_EQ(drawn.pixelColor(97, 3).rgb(), toQColor(colors::veryLightGrey).rgb());
}

TEST_F(ProgressBarWidgetTest, AHiddenBarStandsAtItsValueAtOnce) {
    widget.setBar(barAt(0.5));

    EXPECT_EQ(widget.shownFraction(), 0.5);
}

TEST_F(ProgressBarWidgetTest, AVisibleBarGlidesToItsValue) {
    widget.show();

    widget.setBar(barAt(1.0));

    EXPECT_LT(widget.shownFraction(), 1.0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return widget.shownFraction() == 1.0; }, 600'000));
}

TEST_F(ProgressBarWidgetTest, AGlideThatGetsANewValueOnItsWayGoesOnFromWhereItIs) {
    Frames frames;
    widget.show();
    widget.setBar(barAt(1.0));
    // The toolkit may begin to count at the first frame.
    for (int frame = 0; frame < 4 && widget.shownFraction() == 0.0; ++frame) {
        frames.pass(16, [] {});
    }
    const double reached = widget.shownFraction();
    ASSERT_GT(reached, 0.0);
    ASSERT_LT(reached, 1.0);

    widget.setBar(barAt(0.0));

    EXPECT_EQ(widget.shownFraction(), reached);
}

TEST_F(ProgressBarWidgetTest, AVisibleBarStandsAtItsValueAtOnceWhereNothingIsToMove) {
    class StillStyle final : public QProxyStyle {
      public:
        int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                      QStyleHintReturn* data) const override {
            return hint == SH_Widget_Animation_Duration ? 0
                                                        : QProxyStyle::styleHint(hint, option, widget, data);
        }
    };
    StillStyle still;
    widget.setStyle(&still);
    widget.show();

    widget.setBar(barAt(1.0));

    EXPECT_EQ(widget.shownFraction(), 1.0);
}

TEST_F(ProgressBarWidgetTest, ValuesThatArriveFasterThanFramesDoNotHoldTheFillBack) {
    Frames frames;
    widget.show();

    for (int frame = 0; frame < 50; ++frame) {
        widget.setBar(barAt(0.5));
        frames.pass(16, [&] { widget.setBar(barAt(0.51)); });
    }

    EXPECT_GT(widget.shownFraction(), 0.45);
}

}  // namespace
}  // namespace velmorindal
