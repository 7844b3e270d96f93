#include <QCheckBox>
#include <QProxyStyle>
#include <QRadioButton>
#include <QSlider>
#include <QStyle>

#include "ApplicationFont.h"
#include "Contrast.h"
#include "LegibleStyle.h"
#include "Look.h"
#include "Pixels.h"
#include "ShowButton.h"
#include "WindowTest.h"

namespace velmorindal {
namespace {

/// As a theme leaves it that sets the grounds and the texts, and none of the shades between them.
QPalette incompleteDarkPalette() {
    QPalette palette;
    const QColor ground{35, 38, 41};
    const QColor text{239, 240, 241};
    palette.setColor(QPalette::Window, ground);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, QColor{27, 30, 32});
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Button, QColor{49, 54, 59});
    palette.setColor(QPalette::ButtonText, text);
    return palette;
}

/// Each test runs in a light and in a dark palette.
class LegibilityTest : public testing::TestWithParam<bool> {
  protected:
    void SetUp() override {
        if (GetParam()) {
            QApplication::setPalette(incompleteDarkPalette());
        }
    }
    void TearDown() override { QApplication::setPalette(before_); }

    static QColor ground() { return QApplication::palette().color(QPalette::Window); }

  private:
    const QPalette before_ = QApplication::palette();
};

INSTANTIATE_TEST_SUITE_P(Palettes, LegibilityTest, testing::Bool(),
                         [](const auto& dark) { return dark.param ? "Dark" : "Light"; });

TEST_P(LegibilityTest, FocusAndOutlinesStandOutFromThePage) {
    const QPalette palette = QApplication::palette();
    EXPECT_GE(look::contrast(look::focusColor(palette), ground()), markContrast);
    EXPECT_GE(look::contrast(look::outlineColor(palette), ground()), markContrast);
}

TEST_P(LegibilityTest, TheGrooveOfASliderIsBlueUpToItsHandleOnly) {
    QSlider slider{Qt::Horizontal};
    slider.resize(200, slider.sizeHint().height());
    slider.setRange(0, 2);
    slider.setValue(1);

    const QImage picture = slider.grab().toImage();

    const int line = picture.height() / 2;
    EXPECT_EQ(picture.pixelColor(50, line).rgb(), look::accentColor().rgb());
    EXPECT_EQ(picture.pixelColor(150, line).rgb(), look::outlineColor(QApplication::palette()).rgb());
}

TEST_P(LegibilityTest, ACheckedBoxHasAWhiteTickOnBlue) {
    QCheckBox box;
    box.setChecked(true);
    box.resize(box.sizeHint());
    const int side = box.style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, &box);
    const QRect mark{0, (box.height() - side) / 2, side, side};

    const QImage inside = box.grab(mark.adjusted(3, 3, -3, -3)).toImage();

    EXPECT_TRUE(
        hasPixel(inside, [](const QColor& color) { return color.rgb() == look::accentColor().rgb(); }));
    EXPECT_TRUE(hasPixel(inside, [](const QColor& color) { return color == QColor{Qt::white}; }));
}

TEST_P(LegibilityTest, AShowButtonWhoseDisplayRunsHasAWhiteTextOnBlue) {
    ShowButton button{QStringLiteral("Show Clarity")};
    button.setRunning(true);
    button.resize(button.sizeHint());

    const QImage inside = button.grab(button.rect().adjusted(4, 4, -4, -4)).toImage();

    EXPECT_TRUE(hasPixel(inside, [](const QColor& color) { return color.blue() > 150 && color.red() < 60; }));
    EXPECT_TRUE(hasPixel(inside, [](const QColor& color) { return color.lightness() > 200; }));
}

TEST(Legibility, ContrastIsOneForEqualColoursAndTwentyOneForBlackOnWhite) {
    EXPECT_DOUBLE_EQ(look::contrast(Qt::white, Qt::white), 1.0);
    EXPECT_NEAR(look::contrast(Qt::black, Qt::white), 21.0, 0.001);
    EXPECT_NEAR(look::contrast(Qt::white, Qt::black), 21.0, 0.001);
}

TEST(Legibility, WhiteCanBeReadOnTheCurrentStepAndSeenOnTheAccent) {
    EXPECT_GE(look::contrast(look::accentColor(), Qt::white), textContrast);
}

TEST(Legibility, MarksGrowWithTheFont) {
    const ApplicationFont font;
    QRadioButton button;
    const int small = button.style()->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth, nullptr, &button);

    font.scale(2);

    const int large = button.style()->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth, nullptr, &button);
    EXPECT_NEAR(large, 2 * small, 3);
}

TEST(Legibility, ATitleIsAsMuchLargerInAFontThatIsMeasuredInPixels) {
    const ApplicationFont font;

    font.setPixelSize(40);

    EXPECT_EQ(look::titleFont().pixelSize(), 50);
}

TEST(Legibility, ShortcutsAreUnderlinedAlsoWhereTheDesktopWouldNot) {
    class PlainStyle final : public QProxyStyle {
      public:
        int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                      QStyleHintReturn* data) const override {
            return hint == SH_UnderlineShortcut ? 0 : QProxyStyle::styleHint(hint, option, widget, data);
        }
    };
    LegibleStyle style;
    style.setBaseStyle(new PlainStyle);

    EXPECT_EQ(style.styleHint(QStyle::SH_UnderlineShortcut, nullptr, nullptr, nullptr), 1);
}

}  // namespace
}  // namespace velmorindal
