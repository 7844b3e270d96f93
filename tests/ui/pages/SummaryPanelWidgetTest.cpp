#include "SummaryPanelWidget.h"

#include "ProgressBarWidget.h"
#include "WindowTest.h"

namespace velmorindal {
namespace {

class SummaryPanelWidgetTest : public WindowTest {
  protected:
    void SetUp() override {
        WindowTest::SetUp();
        show(wizardState::Summary);
    }
};

TEST_F(SummaryPanelWidgetTest, TheRowsOfALongSummaryStandInTheirOrderInTwoColumns) {
    velmorindal.outputMode = OutputMode::LongShort;
    velmorindal.outputPath = OutputPath::USBKeyboard;
    settle();

    int lastTop = 0;
    for (const auto& row : container.summaryPanel.rows()) {
        const auto* label = find<QLabel>(QString::fromStdString(row.label));
        const auto* value = find<QLabel>(QString::fromStdString(row.value));
        ASSERT_NE(label, nullptr) << row.label;
        ASSERT_NE(value, nullptr) << row.value;
        EXPECT_EQ(label->geometry().top(), value->geometry().top());
        EXPECT_GT(value->geometry().left(), label->geometry().right());
        EXPECT_GT(label->geometry().top(), lastTop);
        lastTop = label->geometry().top();
    }
}

TEST_F(SummaryPanelWidgetTest, TheStatusFollowsTheWrite) {
    velmorindal.connectionState = ConnectionStatus::writing;
    velmorindal.readWriteProgress = 2.0;
    settle();
    EXPECT_TRUE(showsText(QStringLiteral("Writing data...")));
    ASSERT_NE(find<ProgressBarWidget>(QStringLiteral("Write progress")), nullptr);
    EXPECT_EQ(find<ProgressBarWidget>(QStringLiteral("Write progress"))->targetFraction(), 0.4);
    EXPECT_EQ(navigation(), QStringList{"Cancel"});

    velmorindal.connectionState = ConnectionStatus::connected;
    velmorindal.justSaved = true;
    settle();
    EXPECT_TRUE(showsText(QStringLiteral("Settings successfully written. Please restart your Velmorindal.")));
    EXPECT_EQ(find<ProgressBarWidget>(QStringLiteral("Write progress")), nullptr);
    EXPECT_EQ(navigation(), (QStringList{"Back", "Close"}));

    velmorindal.justSaved = false;
    settle();
    EXPECT_FALSE(
        showsText(QStringLiteral("Settings successfully written. Please restart your Velmorindal.")));
}

TEST_F(SummaryPanelWidgetTest, ARowThatGoesTakesItsLabelAndValueWithIt) {
    velmorindal.outputMode = OutputMode::LongShort;
    velmorindal.cutoff = 2.5;
    settle();
    ASSERT_TRUE(showsText(QStringLiteral("Long/Short cutoff:")));
    ASSERT_TRUE(showsText(QStringLiteral("2.50s")));

    velmorindal.outputMode = OutputMode::Direct;
    settle();

    EXPECT_FALSE(showsText(QStringLiteral("Long/Short cutoff:")));
    EXPECT_FALSE(showsText(QStringLiteral("2.50s")));
}

}  // namespace
}  // namespace velmorindal
