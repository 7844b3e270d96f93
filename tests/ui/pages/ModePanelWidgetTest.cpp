#include "ModePanelWidget.h"

#include <QCheckBox>
#include <QRadioButton>

#include "WindowTest.h"

namespace velmorindal {
namespace {

class ModePanelWidgetTest : public WindowTest {
  protected:
    void SetUp() override {
        WindowTest::SetUp();
        show(wizardState::Mode);
    }

    QRadioButton* radio(const char* name) { return find<QRadioButton>(QString::fromLatin1(name)); }
    QCheckBox* box(const char* name) { return find<QCheckBox>(QString::fromLatin1(name)); }
};

TEST_F(ModePanelWidgetTest, ArrowKeysMoveTheChoice) {
    radio("Direct Mode")->setFocus();

    QTest::keyClick(radio("Direct Mode"), Qt::Key_Down);

    EXPECT_EQ(velmorindal.outputMode.get(), OutputMode::LongShort);
}

TEST_F(ModePanelWidgetTest, TheCheckBoxesAreThereInLongShortModeOnly) {
    EXPECT_EQ(box("Enable short output"), nullptr);

    velmorindal.outputMode = OutputMode::LongShort;
    settle();

    ASSERT_NE(box("Enable short output"), nullptr);
    EXPECT_FALSE(box("Enable short output")->isChecked());
    EXPECT_TRUE(box("Enable long output")->isChecked());
}

TEST_F(ModePanelWidgetTest, RefreshingWritesNothingBack) {
    int announcements = 0;
    velmorindal.outputMode = OutputMode::LongShort;
    velmorindal.shortEnabled = true;
    const auto counting = velmorindal.objectWillChange.subscribe([&] { ++announcements; });

    settle();

    EXPECT_EQ(announcements, 0);
}

}  // namespace
}  // namespace velmorindal
