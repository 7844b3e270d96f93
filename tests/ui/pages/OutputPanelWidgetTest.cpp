#include "OutputPanelWidget.h"

#include <QCheckBox>
#include <QComboBox>
#include <QRadioButton>
#include <QWheelEvent>

#include "Announcer.h"
#include "WindowTest.h"

namespace velmorindal {
namespace {

class OutputPanelWidgetTest : public WindowTest {
  protected:
    void SetUp() override {
        WindowTest::SetUp();
        show(wizardState::Output);
    }

    QComboBox* keys(const char* label) { return find<QComboBox>(QString::fromLatin1(label)); }
};

TEST_F(OutputPanelWidgetTest, AKeyboardOutputShowsTheKeysOfTheMode) {
    find<QRadioButton>(QStringLiteral("USB Keyboard"))->click();
    settle();
    EXPECT_EQ(velmorindal.outputPath.get(), OutputPath::USBKeyboard);
    EXPECT_NE(keys("Keystroke"), nullptr);

    velmorindal.outputMode = OutputMode::LongShort;
    settle();

    EXPECT_EQ(keys("Keystroke"), nullptr);
    EXPECT_EQ(keys("Short hum keystroke"), nullptr);
    EXPECT_NE(keys("Long hum keystroke"), nullptr);
}

TEST_F(OutputPanelWidgetTest, AKeyListOffersEveryKeyInItsOrder) {
    velmorindal.outputPath = OutputPath::BTKeyboard;
    settle();

    const auto& order = VelmorindalSwitch::keyDisplayOrder();
    ASSERT_EQ(keys("Keystroke")->count(), static_cast<int>(order.size()));
    for (std::size_t i = 0; i < order.size(); ++i) {
        EXPECT_EQ(keys("Keystroke")->itemText(static_cast<int>(i)).toStdString(),
                  VelmorindalSwitch::keyDisplayStrings().at(order[i]));
    }
}

TEST_F(OutputPanelWidgetTest, TheKeyOfAnOutputThatIsUncheckedAndCheckedAgainIsKept) {
    velmorindal.outputPath = OutputPath::USBKeyboard;
    velmorindal.outputMode = OutputMode::LongShort;
    velmorindal.shortEnabled = true;
    velmorindal.longEnabled = true;
    settle();
    const auto choose = [this](const char* label, OutputKey key) {
        keys(label)->setCurrentIndex(keys(label)->findData(static_cast<int>(key)));
    };
    choose("Short hum keystroke", OutputKey::F7);
    choose("Long hum keystroke", OutputKey::Tab);
    const auto clickBoxes = [this] {
        show(wizardState::Mode);
        find<QCheckBox>(QStringLiteral("Enable short output"))->click();
        find<QCheckBox>(QStringLiteral("Enable long output"))->click();
        show(wizardState::Output);
    };

    clickBoxes();
    EXPECT_EQ(keys("Short hum keystroke"), nullptr);
    EXPECT_EQ(keys("Long hum keystroke"), nullptr);
    clickBoxes();

    ASSERT_NE(keys("Short hum keystroke"), nullptr);
    ASSERT_NE(keys("Long hum keystroke"), nullptr);
    EXPECT_EQ(keys("Short hum keystroke")->currentData().toInt(), static_cast<int>(OutputKey::F7));
    EXPECT_EQ(keys("Long hum keystroke")->currentData().toInt(), static_cast<int>(OutputKey::Tab));
    EXPECT_EQ(
        velmorindal.outputKeys.get(),
        (keyList{.directKey = keyList{}.directKey, .shortKey = OutputKey::F7, .longKey = OutputKey::Tab}));
}

TEST_F(OutputPanelWidgetTest, TheWheelOverAListDoesNotChangeItsKey) {
    velmorindal.outputPath = OutputPath::USBKeyboard;
    settle();
    QComboBox* const list = keys("Keystroke");
    list->clearFocus();

    QWheelEvent wheel{QPointF{list->rect().center()},
                      list->mapToGlobal(QPointF{list->rect().center()}),
                      {0, -120},
                      {0, -120},
                      Qt::NoButton,
                      Qt::NoModifier,
                      Qt::NoScrollPhase,
                      false};
    QApplication::sendEvent(list, &wheel);

    EXPECT_EQ(velmorindal.outputKeys.get(), keyList{});
}

TEST_F(OutputPanelWidgetTest, AStepThroughAClosedListIsSaidAndAKeyThatLeadsNowhereIsNot) {
    velmorindal.outputPath = OutputPath::USBKeyboard;
    settle();
    QComboBox* const list = keys("Keystroke");
    for (auto* text : window().findChildren<SpokenText*>()) {
        text->setAccessibleName({});
    }
    const auto spoken = [this] {
        QStringList texts;
        for (const auto* text : window().findChildren<SpokenText*>()) {
            if (!text->accessibleName().isEmpty()) {
                texts << text->accessibleName();
            }
        }
        return texts;
    };

    QTest::keyClick(list, Qt::Key_Shift);
    EXPECT_EQ(spoken(), QStringList{});
    QTest::keyClick(list, Qt::Key_Down);
    EXPECT_EQ(spoken(), QStringList{list->currentText()});
}

TEST_F(OutputPanelWidgetTest, RefreshingWritesNothingBack) {
    velmorindal.outputPath = OutputPath::USBKeyboard;
    velmorindal.outputKeys = keyList{.directKey = OutputKey::Tab};
    int announcements = 0;
    const auto counting = velmorindal.objectWillChange.subscribe([&] { ++announcements; });

    settle();

    EXPECT_EQ(keys("Keystroke")->currentData().toInt(), static_cast<int>(OutputKey::Tab));
    EXPECT_EQ(announcements, 0);
}

}  // namespace
}  // namespace velmorindal
