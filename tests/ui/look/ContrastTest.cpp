// The contrasts that a person meets, measured in pictures of the real window.

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QRadioButton>
#include <QStyle>
#include <map>

#include "Contrast.h"
#include "IndicatorWidget.h"
#include "Look.h"
#include "MessageDialog.h"
#include "ProgressBarWidget.h"
#include "StepSlider.h"
#include "ToQt.h"
#include "WindowTest.h"

namespace velmorindal {
namespace {

/// The most frequent colour: what everything else stands upon.
QColor groundOf(const QImage& picture) {
    std::map<QRgb, int> counts;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            ++counts[picture.pixel(x, y)];
        }
    }
    return QColor{
        std::ranges::max_element(counts, {}, [](const auto& entry) { return entry.second; })->first};
}

/// Each test runs in a light and in a dark palette.
class ContrastTest : public WindowTest, public testing::WithParamInterface<bool> {
  protected:
    void SetUp() override {
        if (GetParam()) {
            QApplication::setPalette(darkPalette());
        }
        velmorindal.outputMode = OutputMode::LongShort;
        velmorindal.shortEnabled = true;
        velmorindal.longEnabled = true;
        velmorindal.outputPath = OutputPath::USBKeyboard;
        WindowTest::SetUp();
    }

    void TearDown() override {
        closeWindow();
        WindowTest::TearDown();
        QApplication::setPalette(before_);
    }

    static QColor ground() { return QApplication::palette().color(QPalette::Window); }

    /// The part of a control that holds its text: all of it, but for the mark before it and the frame around
    /// it.
    static QRect textPart(const QWidget& control) {
        QRect part = control.rect();
        const bool marked = qobject_cast<const QRadioButton*>(&control) != nullptr ||
                            qobject_cast<const QCheckBox*>(&control) != nullptr;
        if (marked) {
            part.setLeft(control.style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, &control) + 4);
        }
        const bool framed = qobject_cast<const QPushButton*>(&control) != nullptr ||
                            qobject_cast<const QComboBox*>(&control) != nullptr;
        return framed ? part.adjusted(2, 2, -2, -2) : part;
    }

    /// Looks at every text in `window`. @returns how many there were.
    static int expectLegibleTexts(QWidget& window) {
        int texts = 0;
        for (QWidget* control : window.findChildren<QWidget*>()) {
            const QString text =
                control->property("text").toString() + control->property("currentText").toString();
            if (!control->isVisible() || text.trimmed().isEmpty() || control->visibleRegion().isEmpty()) {
                continue;
            }
            const QRect part{control->mapTo(&window, textPart(*control).topLeft()),
                             textPart(*control).size()};
            const QImage picture = window.grab(part).toImage();
            EXPECT_GE(strongestContrast(picture, groundOf(picture)), textContrast) << text.toStdString();
            ++texts;
        }
        return texts;
    }

  private:
    const QPalette before_ = QApplication::palette();
};

INSTANTIATE_TEST_SUITE_P(Palettes, ContrastTest, testing::Bool(),
                         [](const auto& dark) { return dark.param ? "Dark" : "Light"; });

TEST_P(ContrastTest, EveryTextOfEveryPageCanBeRead) {
    constexpr int stepsAndVersion = 7;
    for (const auto page : {wizardState::Welcome, wizardState::Connect, wizardState::Mode,
                            wizardState::Output, wizardState::Calibration, wizardState::Summary}) {
        show(page);
        SCOPED_TRACE(static_cast<int>(page));
        EXPECT_GT(expectLegibleTexts(window()), stepsAndVersion + 2);
    }
}

TEST_P(ContrastTest, ATextThatCannotBeChosenJustNowCanStillBeRead) {
    velmorindal.pollingState = PollingState::clarity;
    show(wizardState::Calibration);
    const auto* button = find<QPushButton>(QStringLiteral("Show Duration"));
    ASSERT_FALSE(button->isEnabled());
    // Thin strokes of a text this faint do not reach its full colour in a picture.
    const QPalette palette = button->palette();
    const auto contrastOf = [&palette](QPalette::ColorRole text, QPalette::ColorRole on) {
        return look::contrast(palette.color(QPalette::Disabled, text), palette.color(QPalette::Disabled, on));
    };
    EXPECT_GE(contrastOf(QPalette::ButtonText, QPalette::Button), textContrast);
    EXPECT_GE(contrastOf(QPalette::WindowText, QPalette::Window), textContrast);
    EXPECT_GE(contrastOf(QPalette::Text, QPalette::Base), textContrast);
}

TEST_P(ContrastTest, TheTextsOfADialogCanBeRead) {
    show(wizardState::Summary);
    press(QStringLiteral("Save"));
    auto* dialog = window().findChild<MessageDialog*>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_GE(expectLegibleTexts(*dialog), 4);
}

TEST_P(ContrastTest, AnIndicatorStandsOutFromThePageLitOrNotAndItsTickFromIt) {
    show(wizardState::Calibration);
    for (const bool lit : {false, true}) {
        velmorindal.detectedClarity = lit ? 1.0 : 0.0;
        settle();
        auto* indicator = window().findChild<IndicatorWidget*>();
        const QImage picture = indicator->grab().toImage();
        // Left of the tick, which is in the middle.
        const QColor fill = picture.pixelColor(picture.width() / 6, picture.height() / 2);
        EXPECT_GE(look::contrast(fill, ground()), markContrast) << "lit: " << lit;
        if (lit) {
            EXPECT_GE(look::contrast(fill, Qt::white), markContrast);
        }
    }
}

TEST_P(ContrastTest, TheFillOfABarStandsOutFromItsTrackAndItsOutlineFromThePage) {
    velmorindal.detectedClarity = 0.5;
    show(wizardState::Calibration);
    auto* bar = find<ProgressBarWidget>(toQString(CalibrationPanelView::clarityBarName));
    ASSERT_NE(bar, nullptr);
    QImage picture;
    ASSERT_TRUE(eventually([&] {
        picture = bar->grab().toImage();
        return picture.pixel(picture.width() * 2 / 5, picture.height() / 2) == toQColor(colors::blue).rgb();
    }));
    const QColor fill = picture.pixelColor(picture.width() / 4, picture.height() / 2);
    const QColor track = picture.pixelColor(picture.width() * 3 / 4, picture.height() / 2);
    EXPECT_GE(look::contrast(fill, track), markContrast);
    EXPECT_GE(strongestContrast(picture.copy(picture.width() * 3 / 4, 0, 1, picture.height() / 4), ground()),
              markContrast);
}

TEST_P(ContrastTest, AMarkStandsOutFromThePageChosenOrNot) {
    show(wizardState::Mode);
    for (QAbstractButton* button : window().findChildren<QAbstractButton*>()) {
        const bool marked =
            qobject_cast<QRadioButton*>(button) != nullptr || qobject_cast<QCheckBox*>(button) != nullptr;
        if (!button->isVisible() || !marked) {
            continue;
        }
        const int side = button->style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, button);
        const QImage picture = button->grab(QRect{0, (button->height() - side) / 2, side, side}).toImage();
        // A thin slice from its left edge: what bounds the mark, not what is inside it.
        const QImage edge = picture.copy(0, side / 2, side / 6, 1);
        EXPECT_GE(strongestContrast(edge, ground()), markContrast) << button->text().toStdString();
    }
}

TEST_P(ContrastTest, TheHandleOfASliderStandsOutFromThePage) {
    show(wizardState::Calibration);
    auto* slider = find<StepSlider>(QStringLiteral("Clarity threshold"));
    ASSERT_NE(slider, nullptr);
    const QImage picture = slider->grab().toImage();
    EXPECT_GE(strongestContrast(picture.copy(picture.width() / 2, 0, 1, picture.height() / 3), ground()),
              markContrast);
}

TEST(Legible, AColourThatCanBeReadStaysAndAnotherComesOnlyAsFarAsItMust) {
    EXPECT_EQ(look::legible(QColor{90, 90, 90}, Qt::black, Qt::white), (QColor{90, 90, 90}));
    const QColor corrected = look::legible(QColor{190, 190, 190}, Qt::black, QColor{239, 239, 239});
    EXPECT_GE(look::contrast(corrected, QColor{239, 239, 239}), textContrast);
    EXPECT_LT(look::contrast(corrected, QColor{239, 239, 239}), textContrast + 1);
}

}  // namespace
}  // namespace velmorindal
