#include "FocusRing.h"

#include <QCheckBox>
#include <QPainter>
#include <QRadioButton>
#include <QStyleOptionFocusRect>
#include <algorithm>
#include <array>

#include "ApplicationFont.h"
#include "Look.h"
#include "StepSlider.h"
#include "TextLabel.h"
#include "WindowTest.h"

namespace velmorindal {
namespace {

/// How wide the ring is drawn.
constexpr int ringLine = 2;

class FocusRingTest : public WindowTest {
  protected:
    FocusRing* ring() { return window().findChild<FocusRing*>(); }

    /// In the middle of each side.
    bool isPaintedWhole() {
        const QImage picture = window().grab().toImage();
        const QColor color = look::focusColor(ring()->palette());
        const QRect place = placeOf(ring());
        const QPoint middle = place.center();
        const std::array sides{QPoint{place.left(), middle.y()}, QPoint{place.right(), middle.y()},
                               QPoint{middle.x(), place.top()}, QPoint{middle.x(), place.bottom()}};
        return std::ranges::all_of(sides, [&](const QPoint& at) { return picture.pixelColor(at) == color; });
    }
};

TEST_F(FocusRingTest, ItSurroundsTheControlThatHasTheFocus) {
    show(wizardState::Mode);
    for (const char* name : {"Direct Mode", "Long/Short Mode"}) {
        auto* control = find<QRadioButton>(QString::fromLatin1(name));
        control->setFocus();
        settle();

        EXPECT_EQ(ring()->widget(), control);
        EXPECT_TRUE(ring()->isVisible());
        EXPECT_TRUE(placeOf(ring()).contains(placeOf(control).adjusted(-ringLine, 0, ringLine, 0))) << name;
        EXPECT_TRUE(isPaintedWhole()) << name;
    }
}

TEST_F(FocusRingTest, ItIsWholeWithinWhatItsControlStandsIn) {
    show(wizardState::Calibration);
    for (const char* name : {"Clarity threshold", "Cutoff"}) {
        auto* slider = find<StepSlider>(QString::fromLatin1(name));
        slider->setFocus();
        settle();

        EXPECT_TRUE(ring()->parentWidget()->rect().contains(ring()->geometry())) << name;
    }
}

TEST_F(FocusRingTest, ItTouchesNoText) {
    const ApplicationFont font;
    for (const int points : {9, 10, 13, 16}) {
        font.setPointSize(points);
        closeWindow();
        openWindow();
        for (const wizardState page : {wizardState::Connect, wizardState::Summary}) {
            show(page);
            TextLabel* heading = pageOnScreen().heading();
            heading->setFocus();
            settle();

            const QRect inside = placeOf(ring()).adjusted(ringLine, ringLine, -ringLine, -ringLine);
            EXPECT_TRUE(inside.adjusted(1, 1, -1, -1).contains(placeOf(heading))) << points;
            EXPECT_TRUE(ring()->parentWidget()->rect().contains(ring()->geometry())) << points;
            for (const auto* text : heading->parentWidget()->findChildren<QLabel*>()) {
                EXPECT_TRUE(text == heading || !text->isVisible() ||
                            !placeOf(text).intersects(placeOf(ring())))
                    << text->text().toStdString() << ", " << points;
            }
        }
    }
}

TEST_F(FocusRingTest, ItFollowsATextThatIsLaidOutAnew) {
    show(wizardState::Summary);
    TextLabel* heading = pageOnScreen().heading();
    heading->setFocus();
    settle();
    const QSize narrow = ring()->size();

    window().resize(window().width() + 300, window().height());
    settle();

    EXPECT_GT(ring()->width(), narrow.width());
    EXPECT_GT(ring()->width(), heading->width() + 4);
}

TEST_F(FocusRingTest, ItIsNotThereInAWindowWithoutTheFocus) {
    QWidget opened;
    opened.setAttribute(Qt::WA_ShowWithoutActivating);
    QPushButton button{&opened};
    const FocusRing itsRing{&opened};

    opened.show();

    ASSERT_FALSE(button.hasFocus());
    EXPECT_FALSE(itsRing.isVisible());
}

TEST_F(FocusRingTest, ItIsGoneWithItsControl) {
    velmorindal.outputMode = OutputMode::LongShort;
    show(wizardState::Mode);
    find<QPushButton>(QStringLiteral("Next"))->setFocus();

    velmorindal.longEnabled = false;
    settle();

    EXPECT_EQ(ring()->widget(), find<QPushButton>(QStringLiteral("Back")));
}

TEST_F(FocusRingTest, ItSurroundsNoControlOfAnotherWindow) {
    show(wizardState::Mode);
    const FocusRing& mine = *ring();
    ASSERT_NE(mine.widget(), nullptr);
    QWidget other;
    QPushButton button{&other};
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other, patience));

    button.setFocus();

    ASSERT_TRUE(button.hasFocus());
    EXPECT_EQ(mine.widget(), nullptr);
}

TEST_F(FocusRingTest, AControlDrawsNoFrameOfItsOwnWhereThereIsARing) {
    show(wizardState::Mode);
    const auto framed = [](const QWidget& control) {
        QStyleOptionFocusRect option;
        option.initFrom(&control);
        option.rect = QRect{0, 0, 40, 20};
        option.state |= QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange;
        QImage picture{option.rect.size(), QImage::Format_RGB32};
        picture.fill(Qt::white);
        const QImage before = picture;
        QPainter painter{&picture};
        control.style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, &control);
        painter.end();
        return picture != before;
    };

    EXPECT_FALSE(framed(*find<QRadioButton>(QStringLiteral("Direct Mode"))));
    EXPECT_TRUE(framed(QRadioButton{}));
}

}  // namespace
}  // namespace velmorindal
