#include "OutputPanelView.h"

#include "WizardTest.h"

namespace velmorindal {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class OutputPanelViewTest : public PanelTest {
  protected:
    std::vector<std::string_view> shownLabels() const {
        std::vector<std::string_view> labels;
        for (const auto& choice : page.keyChoices()) {
            labels.push_back(choice.label);
        }
        return labels;
    }

    OutputPanelView page{velmorindal};
};

TEST_F(OutputPanelViewTest, AsksForOneOfThreeOutputs) {
    EXPECT_EQ(OutputPanelView::question, "What output would you like the Velmorindal to trigger?");
    EXPECT_EQ(OutputPanelView::pathChoices[0].label, "Switch Output");
    EXPECT_EQ(OutputPanelView::pathChoices[0].value, OutputPath::Switch);
    EXPECT_EQ(OutputPanelView::pathChoices[1].label, "USB Keyboard");
    EXPECT_EQ(OutputPanelView::pathChoices[1].value, OutputPath::USBKeyboard);
    EXPECT_EQ(OutputPanelView::pathChoices[2].label, "Bluetooth Keyboard");
    EXPECT_EQ(OutputPanelView::pathChoices[2].value, OutputPath::BTKeyboard);
}

TEST_F(OutputPanelViewTest, ASwitchOutputHasNoKeyChoiceWhateverTheMode) {
    velmorindal.outputPath = OutputPath::Switch;
    velmorindal.shortEnabled = true;
    velmorindal.longEnabled = true;
    for (const OutputMode mode : allOutputModes) {
        velmorindal.outputMode = mode;
        EXPECT_THAT(shownLabels(), IsEmpty()) << caseName(mode);
    }
}

TEST_F(OutputPanelViewTest, DirectModeHasOneKeystrokeOnEitherKeyboard) {
    velmorindal.outputMode = OutputMode::Direct;
    velmorindal.shortEnabled = true;
    for (const OutputPath path : {OutputPath::USBKeyboard, OutputPath::BTKeyboard}) {
        velmorindal.outputPath = path;
        EXPECT_THAT(page.keyChoices(), ElementsAre(OutputPanelView::directKeyChoice)) << caseName(path);
    }
    EXPECT_EQ(OutputPanelView::directKeyChoice.label, "Keystroke");
}

TEST_F(OutputPanelViewTest, LongShortModeHasAKeystrokeForEachOutputThatIsEnabled) {
    velmorindal.outputMode = OutputMode::LongShort;
    velmorindal.outputPath = OutputPath::USBKeyboard;

    velmorindal.shortEnabled = true;
    velmorindal.longEnabled = true;
    EXPECT_THAT(shownLabels(), ElementsAre("Short hum keystroke", "Long hum keystroke"));

    velmorindal.longEnabled = false;
    EXPECT_THAT(shownLabels(), ElementsAre("Short hum keystroke"));

    velmorindal.shortEnabled = false;
    EXPECT_THAT(shownLabels(), IsEmpty());

    velmorindal.longEnabled = true;
    EXPECT_THAT(shownLabels(), ElementsAre("Long hum keystroke"));
}

TEST_F(OutputPanelViewTest, EveryListOffersAllKeysInDisplayOrder) {
    const auto entries = OutputPanelView::keyEntries();

    std::string labels;
    for (std::size_t index = 0; index < entries.size(); ++index) {
        EXPECT_EQ(entries[index].value, VelmorindalSwitch::keyDisplayOrder().at(index));
        labels.append(entries[index].label).append(", ");
    }
    EXPECT_EQ(labels,
              "Space, Enter, Tab, Shift+Tab, 0, 1, 2, 3, 4, ~1, ~2, ~3, ~4, [Up Arrow], [Down Arrow], "
              "[Left Arrow], [Right Arrow], F1, F2, F3, F4, F5, F6, F7, F8, F9, F10, F11, F12, ");
}

TEST_F(OutputPanelViewTest, ChoosingAKeyChangesThatOneOnly) {
    page.chooseKey(OutputPanelView::directKeyChoice, OutputKey::Tab);
    EXPECT_EQ(velmorindal.outputKeys.get(), (keyList{.directKey = OutputKey::Tab}));

    page.chooseKey(OutputPanelView::shortKeyChoice, OutputKey::Num4);
    page.chooseKey(OutputPanelView::longKeyChoice, OutputKey::F12);

    EXPECT_EQ(velmorindal.outputKeys.get(),
              (keyList{.directKey = OutputKey::Tab, .shortKey = OutputKey::Num4, .longKey = OutputKey::F12}));
}

}  // namespace
}  // namespace velmorindal
