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

/// How many pixels along the middle line have the colour of the fill.
int filledPixels(ProgressBarWidget& widget) {
    const QImage picture = widget.grab().toImage();
    int count = 0;
    for (int x = 0; x < picture.width(); ++x) {
        const QColor pixel = picture.pixelColor(x, picture.height() / 2);
        if (pixel.green() > 120 && pixel.red() < 60) {
            ++count;
        }
    }
    return count;
}

TEST(ProgressBarWidget, TheLastValueStaysBehindAsAPalerFill) {
    ProgressBarWidget widget{QStringLiteral("Duration of last hum")};
    widget.resize(200, 12);

    widget.setBar(barAt(0.25), 0.75);

    EXPECT_EQ(widget.targetFraction(), 0.25);
    EXPECT_EQ(widget.traceFraction(), 0.75);
    const QImage picture = widget.grab().toImage();
    const QColor fill = picture.pixelColor(30, 6);
    const QColor trace = picture.pixelColor(120, 6);
    const QColor track = picture.pixelColor(180, 6);
    EXPECT_LT(fill.lightness(), trace.lightness());
    EXPECT_LT(trace.lightness(), track.lightness());
}

TEST(ProgressBarWidget, TheTraceAloneCanChange) {
    ProgressBarWidget widget{QStringLiteral("Duration of last hum")};
    widget.setBar(barAt(0.25), 0.75);

    widget.setBar(barAt(0.25), 0.5);

    EXPECT_EQ(widget.traceFraction(), 0.5);
}

TEST(ProgressBarWidget, TheFillTakesItsPartOfTheTrack) {
    ProgressBarWidget widget{QStringLiteral("Write progress")};
    widget.resize(200, 12);

    widget.setBar(barAt(2.0, 5.0));

    EXPECT_NEAR(filledPixels(widget), 80, 4);
}

TEST(ProgressBarWidget, ANegativeValueAndWhatIsNotANumberFillNothing) {
    ProgressBarWidget widget{QStringLiteral("Clarity level")};
    widget.resize(200, 12);

    for (const double value : {-1.0, std::numeric_limits<double>::quiet_NaN()}) {
        widget.setBar(barAt(value));
        EXPECT_EQ(widget.targetFraction(), 0.0);
        EXPECT_EQ(filledPixels(widget), 0);
    }
}

TEST(ProgressBarWidget, ASmallFillStaysInsideTheRoundedEndOfTheTrack) {
    ProgressBarWidget widget{QStringLiteral("Clarity level")};
    widget.resize(200, 40);
    widget.setBar(barAt(0.03));

    const QImage picture = widget.grab().toImage();

    const QColor corner = picture.pixelColor(1, 1);
    EXPECT_EQ(corner, widget.palette().color(QPalette::Window));
    EXPECT_GT(filledPixels(widget), 0);
}

TEST(ProgressBarWidget, TheTrackIsDrawnOnlyWhereItIsEnabled) {
    ProgressBarWidget widget{QStringLiteral("Clarity level")};
    widget.resize(200, 12);
    ProgressBar bare = barAt(0.0);
    bare.backgroundEnabled = false;

    widget.setBar(bare);

    EXPECT_EQ(widget.grab().toImage().pixelColor(100, 6), widget.palette().color(QPalette::Window));
}

TEST(ProgressBarWidget, TheTrackHasTheColorOfItsBackground) {
    ProgressBarWidget widget{QStringLiteral("Clarity level")};
    widget.resize(200, 12);

    widget.setBar(barAt(0.0));

    EXPECT_EQ(widget.grab().toImage().pixelColor(100, 6).rgb(), toQColor(colors::veryLightGrey).rgb());
}

TEST(ProgressBarWidget, TheFillIsRoundAtItsEndToo) {
    ProgressBarWidget widget{QStringLiteral("Clarity level")};
    widget.resize(200, 40);

    widget.setBar(barAt(0.5));

    const QImage picture = widget.grab().toImage();
    EXPECT_EQ(picture.pixelColor(97, 20).rgb(), toQColor(colors::green).rgb());
    EXPECT_EQ(picture.pixelColor(97, 3).rgb(), toQColor(colors::veryLightGrey).rgb());
}

TEST(ProgressBarWidget, AHiddenBarStandsAtItsValueAtOnce) {
    ProgressBarWidget widget{QStringLiteral("Clarity level")};

    widget.setBar(barAt(0.5));

    EXPECT_EQ(widget.shownFraction(), 0.5);
}

TEST(ProgressBarWidget, AVisibleBarGlidesToItsValue) {
    ProgressBarWidget widget{QStringLiteral("Clarity level")};
    widget.show();

    widget.setBar(barAt(1.0));

    EXPECT_LT(widget.shownFraction(), 1.0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return widget.shownFraction() == 1.0; }, 600'000));
}

TEST(ProgressBarWidget, AGlideThatGetsANewValueOnItsWayGoesOnFromWhereItIs) {
    Frames frames;
    ProgressBarWidget widget{QStringLiteral("Clarity level")};
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

TEST(ProgressBarWidget, AVisibleBarStandsAtItsValueAtOnceWhereNothingIsToMove) {
    class StillStyle final : public QProxyStyle {
      public:
        int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                      QStyleHintReturn* data) const override {
            return hint == SH_Widget_Animation_Duration ? 0
                                                        : QProxyStyle::styleHint(hint, option, widget, data);
        }
    };
    StillStyle still;
    ProgressBarWidget widget{QStringLiteral("Clarity level")};
    widget.setStyle(&still);
    widget.show();

    widget.setBar(barAt(1.0));

    EXPECT_EQ(widget.shownFraction(), 1.0);
}

TEST(ProgressBarWidget, ValuesThatArriveFasterThanFramesDoNotHoldTheFillBack) {
    Frames frames;
    ProgressBarWidget widget{QStringLiteral("Clarity level")};
    widget.show();

    for (int frame = 0; frame < 50; ++frame) {
        widget.setBar(barAt(0.5));
        frames.pass(16, [&] { widget.setBar(barAt(0.51)); });
    }

    EXPECT_GT(widget.shownFraction(), 0.45);
}

}  // namespace
}  // namespace velmorindal
