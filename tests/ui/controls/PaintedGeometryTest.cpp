#include <QCheckBox>
#include <QLayout>
#include <QRadioButton>
#include <QStyle>
#include <algorithm>
#include <initializer_list>
#include <string_view>
#include <vector>

#include "ApplicationFont.h"
#include "IndicatorWidget.h"
#include "KeyList.h"
#include "LogoWidget.h"
#include "Look.h"
#include "PageWidget.h"
#include "ProgressBarWidget.h"
#include "ShowButton.h"
#include "StepSlider.h"
#include "SummaryPanelWidget.h"
#include "TextLabel.h"
#include "ThresholdMeter.h"
#include "ToQt.h"
#include "WindowTest.h"

namespace velmorindal {
namespace {

/// Puts a control on the screen and counts how often it is painted from then on.
class Paints final : public QObject {
  public:
    explicit Paints(QWidget& control) {
        control.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&control, patience));
        for (int turn = 0; turn < 3; ++turn) {
            QApplication::processEvents();
        }
        control.installEventFilter(this);
    }

    int count() const { return count_; }

    bool eventFilter(QObject* /*object*/, QEvent* event) override {
        count_ += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }

  private:
    int count_ = 0;
};

class PaintedGeometryTest : public WindowTest {
  protected:
    /// The least rectangle around all pixels that `counts` picks.
    template <typename Counts>
    static QRect boundsOf(const QImage& picture, Counts counts) {
        QRect bounds;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (counts(picture.pixelColor(x, y))) {
                    bounds = bounds.united(QRect{x, y, 1, 1});
                }
            }
        }
        return bounds;
    }

    /// The least rectangle around all that stands out from the ground.
    static QRect paintedIn(const QImage& picture) {
        const QColor ground = picture.pixelColor(2, 2);
        return boundsOf(picture, [&](const QColor& color) { return color != ground; });
    }

    static CalibrationPanelView::Indicator indicatorThatIs(bool lit, bool muted = false) {
        return {
            .accessibleName = "", .text = "", .lit = lit, .description = "", .reading = "", .muted = muted};
    }

    const QLabel* text(std::string_view words) { return find<QLabel>(toQString(words)); }
    const QWidget* button(const char* label) { return find<QAbstractButton>(QString::fromLatin1(label)); }
    const QWidget* bar(std::string_view name) { return find<ProgressBarWidget>(toQString(name)); }

    /// Each control must begin below the end of the one before it.
    void expectFromTopToBottom(std::initializer_list<const QWidget*> controls) {
        int end = 0;
        for (const QWidget* control : controls) {
            ASSERT_NE(control, nullptr);
            EXPECT_GE(placeOf(control).top(), end) << control->metaObject()->className();
            end = placeOf(control).bottom() + 1;
        }
    }

    static bool isRed(const QColor& color) { return color.red() > 150 && color.green() < 90; }
};

TEST_F(PaintedGeometryTest, TheSummaryIsInsetByThirtyOnEverySide) {
    velmorindal.outputMode = OutputMode::LongShort;
    show(wizardState::Summary);
    const QImage picture = pageOnScreen().grab().toImage();
    const QRect painted = paintedIn(picture);

    // The first letter may begin a pixel or two within its text.
    EXPECT_GE(painted.left(), 30);
    EXPECT_LE(painted.left(), 33);
    EXPECT_GE(painted.top(), 30);
    EXPECT_LE(painted.top(), 30 + look::spacing());
    EXPECT_LE(painted.right(), picture.width() - 30);
    EXPECT_EQ(pageOnScreen().heading()->geometry().right(), pageOnScreen().width() - 30 - 1);
}

TEST_F(PaintedGeometryTest, TheSummaryIsInsetByThirtyBelowItsLastLine) {
    velmorindal.justSaved = true;
    SummaryPanelWidget page{container.summaryPanel};
    // As high as it needs to be.
    page.resize(500, page.layout()->totalHeightForWidth(500));
    const QImage picture = page.grab().toImage();
    const QRect painted = paintedIn(picture);

    EXPECT_LE(painted.bottom(), picture.height() - 30);
    EXPECT_GE(painted.bottom(), picture.height() - 30 - look::spacing());
}

TEST_F(PaintedGeometryTest, TheControlsOfAPageAreInTheirOrder) {
    velmorindal.outputMode = OutputMode::LongShort;
    velmorindal.shortEnabled = true;
    velmorindal.outputPath = OutputPath::USBKeyboard;
    expectFromTopToBottom({window().findChild<LogoWidget*>(), text(WelcomePanelView::title),
                           text(WelcomePanelView::body), button("Next")});

    velmorindal.connectionState = ConnectionStatus::connecting;
    show(wizardState::Connect);
    const QWidget* const progress = bar(ConnectPanelView::progressBarName);
    expectFromTopToBottom({text(ConnectPanelView::title), text("Connecting..."), progress, button("Load")});
    expectFromTopToBottom({progress, text(ConnectPanelView::loadText)});

    show(wizardState::Mode);
    expectFromTopToBottom({text(ModePanelView::introduction), text(ModePanelView::question),
                           button("Direct Mode"), button("Long/Short Mode"), button("Enable short output"),
                           button("Enable long output")});

    show(wizardState::Output);
    expectFromTopToBottom({text(OutputPanelView::question), button("Switch Output"), button("USB Keyboard"),
                           button("Bluetooth Keyboard"), find<KeyList>(QStringLiteral("Short hum keystroke")),
                           find<KeyList>(QStringLiteral("Long hum keystroke"))});

    velmorindal.connectionState = ConnectionStatus::writing;
    show(wizardState::Summary);
    expectFromTopToBottom({text(SummaryPanelView::introduction), text("Clarity:"), text("Writing data..."),
                           bar(SummaryPanelView::progressBarName)});
}

TEST_F(PaintedGeometryTest, EachBarStandsUnderItsSliderAndThatUnderItsButton) {
    using View = CalibrationPanelView;
    show(wizardState::Calibration);
    const auto slider = [this](const char* name) { return find<StepSlider>(QString::fromLatin1(name)); };

    expectFromTopToBottom({text(View::title), text(View::placement), text(View::clarityHeading),
                           text(View::clarityExplanation), button("Show Clarity"),
                           slider("Clarity threshold"), bar(View::clarityBarName),
                           text(View::durationHeading), text(View::durationExplanation),
                           button("Show Duration"), slider("Cutoff"), bar(View::durationBarName)});
}

TEST_F(PaintedGeometryTest, AnIndicatorIsACircleTwentyAcross) {
    show(wizardState::Calibration);
    auto* indicator = find<IndicatorWidget>(QStringLiteral("Clarity indicator"));
    const QImage picture = indicator->grab().toImage();

    // By half-covered pixels, where the smooth edge begins.
    const QRect circle = boundsOf(picture, [](const QColor& color) { return color.lightness() < 190; });

    EXPECT_NEAR(circle.width(), 20, 1);
    EXPECT_NEAR(circle.height(), 20, 1);
    EXPECT_GT(picture.pixelColor(circle.left() + 1, circle.top() + 1).lightness(), 190);
}

TEST_F(PaintedGeometryTest, AnIndicatorIsPaintedGreenWhereItIsLitAndGreyElsewhere) {
    const auto colorOf = [](bool lit) {
        IndicatorWidget indicator{indicatorThatIs(lit)};
        indicator.resize(indicator.sizeHint());
        // Below the tick.
        return indicator.grab().toImage().pixelColor(indicator.width() / 2, indicator.height() - 4);
    };
    EXPECT_EQ(colorOf(true).rgb(), toQColor(colors::green).rgb());
    EXPECT_EQ(colorOf(false).rgb(), toQColor(colors::grey).rgb());
}

TEST_F(PaintedGeometryTest, AMutedIndicatorIsARing) {
    IndicatorWidget indicator{indicatorThatIs(false, true)};
    indicator.resize(indicator.sizeHint());

    const QImage picture = indicator.grab().toImage();

    const QColor ground = indicator.palette().color(QPalette::Window);
    EXPECT_EQ(picture.pixelColor(picture.rect().center()), ground);
    EXPECT_NE(picture.pixelColor(2, picture.height() / 2), ground);
}

TEST_F(PaintedGeometryTest, AnIndicatorIsPaintedAgainOnlyWhenItHasChanged) {
    IndicatorWidget indicator{indicatorThatIs(false)};
    const Paints paints{indicator};

    indicator.setIndicator(indicatorThatIs(false));
    settle();
    EXPECT_EQ(paints.count(), 0);

    indicator.setIndicator(indicatorThatIs(true));
    EXPECT_TRUE(eventually([&] { return paints.count() > 0; }));
}

TEST_F(PaintedGeometryTest, AShowButtonIsPaintedAgainWhenItsDisplayStarts) {
    ShowButton button{QStringLiteral("Show Clarity")};
    const Paints paints{button};

    button.setRunning(true);

    EXPECT_TRUE(eventually([&] { return paints.count() > 0; }));
}

TEST_F(PaintedGeometryTest, TheLogoIsPaddedByTwentyWithinARingFourWide) {
    auto* logo = window().findChild<LogoWidget*>();
    const QImage picture = logo->grab().toImage();
    const int across = 9 * look::spacing() + 2 * 20;

    const QRect ring = boundsOf(picture, isRed);

    EXPECT_NEAR(ring.width(), across + 4, 2);
    EXPECT_NEAR(ring.height(), across + 4, 2);
    const int middle = ring.center().y();
    int width = 0;
    for (int x = ring.left(); isRed(picture.pixelColor(x, middle)); ++x) {
        ++width;
    }
    EXPECT_NEAR(width, 4, 1);
    // Within the padding there is nothing but the page's ground.
    for (int x = ring.left() + 5; x < ring.left() + 18; ++x) {
        EXPECT_EQ(picture.pixelColor(x, middle), logo->palette().color(QPalette::Window)) << x;
    }
}

TEST_F(PaintedGeometryTest, TheHeadingsOfTheSectionsAreSmallerThanTheBodyAndTheTitleIsLarger) {
    show(wizardState::Calibration);
    const auto sizeOf = [&](const char* text) {
        return find<QLabel>(QString::fromUtf8(text))->fontInfo().pointSizeF();
    };
    const double body = sizeOf(CalibrationPanelView::placement.data());

    EXPECT_LT(sizeOf("Clarity:"), body);
    EXPECT_LT(sizeOf("Duration:"), body);
    EXPECT_GT(sizeOf(CalibrationPanelView::title.data()), body);
}

TEST_F(PaintedGeometryTest, TheCheckBoxesAreIndentedUnderTheirMode) {
    velmorindal.outputMode = OutputMode::LongShort;
    show(wizardState::Mode);
    const int mode = placeOf(find<QRadioButton>(QStringLiteral("Long/Short Mode"))).left();

    for (const char* label : {"Enable short output", "Enable long output"}) {
        EXPECT_EQ(placeOf(find<QCheckBox>(QString::fromLatin1(label))).left(), mode + 3 * look::spacing());
    }
}

TEST_F(PaintedGeometryTest, BothMetersBeginAndEndAtTheSamePlaces) {
    for (const int width : {0, 900}) {
        window().resize(std::max(width, window().minimumWidth()), window().height());
        show(wizardState::Calibration);
        const auto meters = window().findChildren<ThresholdMeter*>();
        ASSERT_EQ(meters.size(), 2);
        EXPECT_EQ(placeOf(meters[0]).left(), placeOf(meters[1]).left());
        EXPECT_EQ(placeOf(meters[0]).width(), placeOf(meters[1]).width());
        const QRect clarity = placeOf(find<ProgressBarWidget>(QStringLiteral("Clarity level")));
        const QRect duration = placeOf(find<ProgressBarWidget>(QStringLiteral("Duration of last hum")));
        EXPECT_EQ(clarity.left(), duration.left());
        EXPECT_EQ(clarity.width(), duration.width());
    }
}

TEST_F(PaintedGeometryTest, AGrooveBeginsAndEndsWithTheBarUnderIt) {
    velmorindal.cutoff = 3.0F;
    show(wizardState::Calibration);
    for (auto* meter : window().findChildren<ThresholdMeter*>()) {
        const auto* slider = meter->findChild<StepSlider*>();
        const auto* bar = meter->findChild<ProgressBarWidget*>();
        const QImage picture = meter->grab().toImage();
        const QColor ground = picture.pixelColor(1, 1);
        const int line = slider->geometry().center().y();
        int first = 0;
        while (picture.pixelColor(first, line) == ground) {
            ++first;
        }
        EXPECT_NEAR(first, bar->geometry().left(), 2);
    }
}

TEST_F(PaintedGeometryTest, AScaleRunsFromTheLeftAlsoWhereTextsAreReadFromTheRight) {
    velmorindal.cutoff = 1.0F;
    show(wizardState::Calibration);
    const auto pictures = [this] {
        std::vector<QImage> taken;
        for (auto* meter : window().findChildren<ThresholdMeter*>()) {
            taken.push_back(meter->grab().toImage());
        }
        return taken;
    };
    const auto fromTheLeft = pictures();

    QApplication::setLayoutDirection(Qt::RightToLeft);
    settle();
    const auto fromTheRight = pictures();
    QApplication::setLayoutDirection(Qt::LeftToRight);

    EXPECT_EQ(fromTheRight, fromTheLeft);
}

TEST_F(PaintedGeometryTest, WhatIsPressedIsHighEnoughAndGrowsWithTheFont) {
    velmorindal.outputMode = OutputMode::LongShort;
    velmorindal.outputPath = OutputPath::USBKeyboard;
    for (const wizardState state : allWizardStates) {
        show(state);
        for (auto* button : window().findChildren<QAbstractButton*>()) {
            if (button->isVisible()) {
                EXPECT_GE(button->height(), 24) << button->text().toStdString();
            }
        }
        for (const char* label : {"Cancel", "Back", "Next", "Save", "Close"}) {
            if (const auto* button = find<QPushButton>(QString::fromLatin1(label))) {
                EXPECT_GE(button->height(), 44) << label;
            }
        }
    }
    const int before = look::targetHeight();
    const ApplicationFont font;
    font.scale(2);
    EXPECT_GE(look::targetHeight(), 2 * before - 3);
    EXPECT_GE(look::navigationHeight(), 80);
}

}  // namespace
}  // namespace velmorindal
