#include "FocusRing.h"

#include <QCheckBox>
#include <QPainter>
#include <QRadioButton>
#include <QStyleOptionFocusRect>

#include "ApplicationFont.h"
#include "StepSlider.h"
#include "TextLabel.h"
#include "WindowTest.h"

namespace velmorindal {
namespace {

class FocusRingTest : public WindowTest {
  protected:
    FocusRing* ring() { return window().findChild<FocusRing*>(); }
};

TEST_F(FocusRingTest, ItSurroundsTheControlThatHasTheFocus) {
    show(wizardState::Mode);
    for (const char* name : {"Direct Mode", "Long/Short Mode"}) {
        auto* control = find<QRadioButton>(QString::fromLatin1(name));
        control->setFocus();
        settle();

        EXPECT_EQ(ring()->widget(), control);
        EXPECT_TRUE(ring()->isVisible());
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
    constexpr int line = 2;
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

            const QRect inside = placeOf(ring()).adjusted(line, line, -line, -line);
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

TEST_F(FocusRingTest, TheFocusCanBeSeenInThePicture) {
    show(wizardState::Calibration);
    auto* slider = find<StepSlider>(QStringLiteral("Cutoff"));
    const QImage without = window().grab().toImage();

    slider->setFocus();
    settle();

    EXPECT_NE(window().grab().toImage(), without);
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
