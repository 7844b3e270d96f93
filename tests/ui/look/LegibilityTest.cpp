#include <QRadioButton>
#include <QSlider>
#include <QStyle>

#include "Contrast.h"
#include "Look.h"
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

    /// The strongest contrast with the ground that a picture of `widget` holds.
    static double strongestContrast(QWidget& widget) {
        widget.ensurePolished();
        return velmorindal::strongestContrast(widget.grab().toImage(), ground());
    }

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

TEST_P(LegibilityTest, AnUncheckedRadioButtonCanBeSeen) {
    QRadioButton button;
    EXPECT_GE(strongestContrast(button), markContrast);
}

TEST_P(LegibilityTest, ASliderCanBeSeen) {
    QSlider slider{Qt::Horizontal};
    slider.resize(200, slider.sizeHint().height());
    EXPECT_GE(strongestContrast(slider), markContrast);
}

TEST_P(LegibilityTest, TextsOfThePagesAndButtonsCanBeRead) {
    const QPalette palette = QApplication::palette();
    EXPECT_GE(look::contrast(palette.color(QPalette::WindowText), ground()), textContrast);
    EXPECT_GE(look::contrast(palette.color(QPalette::ButtonText), palette.color(QPalette::Button)),
              textContrast);
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
    const QFont before = QApplication::font();
    QRadioButton button;
    const int small = button.style()->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth, nullptr, &button);
    QFont doubled = before;
    doubled.setPointSizeF(before.pointSizeF() * 2);

    QApplication::setFont(doubled);
    const int large = button.style()->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth, nullptr, &button);
    QApplication::setFont(before);

    EXPECT_NEAR(large, 2 * small, 3);
}

}  // namespace
}  // namespace velmorindal
