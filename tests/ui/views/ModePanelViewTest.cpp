#include "ModePanelView.h"

#include "WizardTest.h"

namespace velmorindal {
namespace {

class ModePanelViewTest : public PanelTest {
  protected:
    ModePanelView page{velmorindal};
};

TEST_F(ModePanelViewTest, ExplainsTheTwoModesAndAsksForOne) {
    EXPECT_EQ(ModePanelView::introduction, "The Velmorindal can operate in two modes:");
    EXPECT_EQ(ModePanelView::explanations[0].label, "Direct Mode: ");
    EXPECT_EQ(ModePanelView::explanations[0].text, "control one output with a hum");
    EXPECT_EQ(ModePanelView::explanations[1].label, "Long/Short Mode:");
    EXPECT_EQ(ModePanelView::explanations[1].text, "control two outputs with a short hum or a long hum");
    EXPECT_EQ(ModePanelView::question, "Which mode would you like?");
    EXPECT_EQ(ModePanelView::modeChoices[0].label, "Direct Mode");
    EXPECT_EQ(ModePanelView::modeChoices[0].value, OutputMode::Direct);
    EXPECT_EQ(ModePanelView::modeChoices[1].label, "Long/Short Mode");
    EXPECT_EQ(ModePanelView::modeChoices[1].value, OutputMode::LongShort);
}

TEST_F(ModePanelViewTest, TheCheckBoxesAreBoundToTheShortThenTheLongOutput) {
    EXPECT_EQ(ModePanelView::checkBoxes[0].label, "Enable short output");
    EXPECT_EQ(ModePanelView::checkBoxes[0].flag, &VelmorindalSwitch::shortEnabled);
    EXPECT_EQ(ModePanelView::checkBoxes[1].label, "Enable long output");
    EXPECT_EQ(ModePanelView::checkBoxes[1].flag, &VelmorindalSwitch::longEnabled);
}

TEST_F(ModePanelViewTest, TheCheckBoxesAreShownOnlyInLongShortMode) {
    EXPECT_FALSE(page.showsCheckBoxes());
    velmorindal.outputMode = OutputMode::LongShort;
    EXPECT_TRUE(page.showsCheckBoxes());
}

TEST_F(ModePanelViewTest, NextIsWithheldOnlyWhileLongShortModeHasNeitherOutput) {
    struct Case {
        OutputMode mode;
        bool shortEnabled;
        bool longEnabled;
        std::int64_t buttons;
    };
    constexpr std::array cases{
        Case{OutputMode::LongShort, false, false, 3}, Case{OutputMode::LongShort, true, false, 7},
        Case{OutputMode::LongShort, false, true, 7},  Case{OutputMode::LongShort, true, true, 7},
        Case{OutputMode::Direct, false, false, 7},    Case{OutputMode::Direct, true, false, 7},
        Case{OutputMode::Direct, false, true, 7},     Case{OutputMode::Direct, true, true, 7},
    };
    for (const Case& given : cases) {
        velmorindal.outputMode = given.mode;
        velmorindal.shortEnabled = given.shortEnabled;
        velmorindal.longEnabled = given.longEnabled;
        EXPECT_EQ(ModePanelView::buttons(velmorindal).rawValue, given.buttons)
            << caseName(given.mode) << given.shortEnabled << given.longEnabled;
    }
}

}  // namespace
}  // namespace velmorindal
