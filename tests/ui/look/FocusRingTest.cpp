#include "FocusRing.h"

#include <QCheckBox>
#include <QRadioButton>

#include "StepSlider.h"
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

}  // namespace
}  // namespace velmorindal
