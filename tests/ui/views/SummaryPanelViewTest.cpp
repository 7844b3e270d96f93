#include "SummaryPanelView.h"

#include "WizardTest.h"

namespace velmorindal {
namespace {

using testing::ElementsAre;
using Row = SummaryPanelView::Row;

class SummaryPanelViewTest : public PanelTest {
  protected:
    SummaryPanelView page{velmorindal};
};

TEST_F(SummaryPanelViewTest, SaysWhatItLists) {
    EXPECT_EQ(SummaryPanelView::introduction,
              "You have configured your Velmorindal with the following parameters:");
    EXPECT_EQ(SummaryPanelView::progressBarName, "Write progress");
    EXPECT_EQ(SummaryPanelView::contentInset, 30);
}

TEST_F(SummaryPanelViewTest, DirectModeOnASwitchHasThreeRows) {
    EXPECT_THAT(page.rows(), ElementsAre(Row{"Mode:", "Direct mode"}, Row{"Output:", "Switch Jack #2"},
                                         Row{"Clarity:", "0.50"}));
}

TEST_F(SummaryPanelViewTest, AllSixRowsStandInOrderForAKeyboardInLongShortMode) {
    velmorindal.outputMode = OutputMode::LongShort;
    velmorindal.outputPath = OutputPath::BTKeyboard;
    velmorindal.shortEnabled = false;
    velmorindal.longEnabled = true;

    EXPECT_THAT(page.rows(),
                ElementsAre(Row{"Mode:", "Long/short mode"},
                            Row{"Long/Short outputs:", "Short output: DISABLED; Long output: ENABLED"},
                            Row{"Output:", "Bluetooth Keyboard"},
                            Row{"Output Keystroke:", "Short: Space; Long: Enter"},
                            Row{"Long/Short cutoff:", "1.50s"}, Row{"Clarity:", "0.50"}));
}

TEST_F(SummaryPanelViewTest, TheKeystrokeRowIsFixedWhateverKeysWereChosen) {
    velmorindal.outputPath = OutputPath::USBKeyboard;
    velmorindal.outputKeys =
        keyList{.directKey = OutputKey::Tab, .shortKey = OutputKey::F5, .longKey = OutputKey::F6};

    EXPECT_THAT(page.rows(),
                ElementsAre(Row{"Mode:", "Direct mode"}, Row{"Output:", "USB Keyboard"},
                            Row{"Output Keystroke:", "Short: Space; Long: Enter"}, Row{"Clarity:", "0.50"}));
}

TEST_F(SummaryPanelViewTest, NumbersAlwaysHaveTwoDecimals) {
    velmorindal.outputMode = OutputMode::LongShort;
    velmorindal.cutoff = 0.5F;
    velmorindal.clarity = 0.3F;

    const auto rows = page.rows();

    EXPECT_THAT(rows, testing::Contains(Row{"Long/Short cutoff:", "0.50s"}));
    EXPECT_THAT(rows, testing::Contains(Row{"Clarity:", "0.30"}));
}

TEST_F(SummaryPanelViewTest, ThePathNamesTheJackThatClosesInDirectModeThatOfLongHums) {
    struct Case {
        OutputMode mode;
        bool shortEnabled;
        bool longEnabled;
        std::string_view text;
    };
    constexpr std::array cases{
        // Direct mode closes the long output's jack, whatever the two flags say.
        Case{OutputMode::Direct, false, false, "Switch Jack #2"},
        Case{OutputMode::Direct, true, false, "Switch Jack #2"},
        Case{OutputMode::Direct, true, true, "Switch Jack #2"},
        Case{OutputMode::LongShort, true, true, "Both switch jacks"},
        Case{OutputMode::LongShort, true, false, "Switch Jack #1"},
        Case{OutputMode::LongShort, false, true, "Switch Jack #2"},
        Case{OutputMode::LongShort, false, false, "Switch Jack #2"},
    };
    for (const Case& given : cases) {
        velmorindal.outputMode = given.mode;
        velmorindal.shortEnabled = given.shortEnabled;
        velmorindal.longEnabled = given.longEnabled;
        EXPECT_EQ(page.pathString(), given.text)
            << caseName(given.mode) << given.shortEnabled << given.longEnabled;
    }
}

TEST_F(SummaryPanelViewTest, WhileWritingTheBarCountsFiveStepsInGreenOnVeryLightGrey) {
    velmorindal.connectionState = ConnectionStatus::writing;
    velmorindal.readWriteProgress = 2.0;
    // Writing outweighs an earlier success.
    velmorindal.justSaved = true;

    EXPECT_EQ(page.statusText(), "Writing data...");
    const ProgressBar bar = page.progressBar().value();
    EXPECT_DOUBLE_EQ(bar.value, 2.0);
    EXPECT_DOUBLE_EQ(bar.maxValue, 5.0);
    EXPECT_DOUBLE_EQ(bar.fillWidth(100.0), 40.0);
    EXPECT_TRUE(bar.backgroundEnabled);
    EXPECT_EQ(bar.backgroundColor, colors::veryLightGrey);
    EXPECT_EQ(bar.foregroundColor, colors::green);
}

TEST_F(SummaryPanelViewTest, ASuccessfulWriteIsReportedUntilJustSavedIsCleared) {
    velmorindal.connectionState = ConnectionStatus::connected;
    velmorindal.justSaved = true;
    EXPECT_EQ(page.statusText(), "Settings successfully written. Please restart your Velmorindal.");
    EXPECT_FALSE(page.progressBar().has_value());

    velmorindal.justSaved = false;
    EXPECT_EQ(page.statusText(), "");
}

}  // namespace
}  // namespace velmorindal
