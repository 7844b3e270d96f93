#include "ui/widgets/ContainerWidget.h"

#include <QRadioButton>
#include <QScrollBar>

#include "ui/widgets/Look.h"
#include "ui/widgets/PageScroller.h"
#include "ui/widgets/WindowTest.h"

namespace velmorindal {
namespace {

class ContainerWidgetTest : public WindowTest {
  protected:
    QString focusedLabel() {
        auto* button = qobject_cast<QPushButton*>(window().focusWidget());
        return button == nullptr ? QString{} : button->text();
    }

    QLabel* step(wizardState state) {
        for (QLabel* label : window().findChildren<QLabel*>()) {
            if (label->text().toStdString() == stepLabel(state)) {
                return label;
            }
        }
        return nullptr;
    }
};

TEST_F(ContainerWidgetTest, TheStepColumnNamesEveryStepAndTheVersion) {
    for (const char* text :
         {"Welcome", "Connect", "Mode", "Ouptut", "Calibration", "Summary", "Version 1.1M"}) {
        EXPECT_TRUE(showsText(QString::fromLatin1(text))) << text;
    }
}

TEST_F(ContainerWidgetTest, TheCurrentStepIsWhiteOnBlueAndTheOthersBlackOnWhite) {
    show(wizardState::Mode);

    const auto textOf = [&](wizardState state) { return step(state)->palette().color(QPalette::WindowText); };
    const auto groundOf = [&](wizardState state) { return step(state)->palette().color(QPalette::Window); };
    EXPECT_EQ(textOf(wizardState::Mode), QColor{Qt::white});
    EXPECT_GT(groundOf(wizardState::Mode).blue(), 150);
    EXPECT_EQ(textOf(wizardState::Welcome), QColor{Qt::black});
    EXPECT_EQ(groundOf(wizardState::Welcome), QColor{Qt::white});
    EXPECT_EQ(step(wizardState::Mode)->accessibleDescription(), QStringLiteral("current step"));
    EXPECT_TRUE(step(wizardState::Welcome)->accessibleDescription().isEmpty());
}

TEST_F(ContainerWidgetTest, EveryPageOffersTheButtonsOfItsSet) {
    EXPECT_EQ(navigation(), (QStringList{"Next", "Close"}));
    show(wizardState::Connect);
    EXPECT_EQ(navigation(), (QStringList{"Back", "Close"}));
    for (const wizardState page : {wizardState::Mode, wizardState::Output, wizardState::Calibration}) {
        show(page);
        EXPECT_EQ(navigation(), (QStringList{"Cancel", "Back", "Next"}));
    }
    show(wizardState::Summary);
    EXPECT_EQ(navigation(), (QStringList{"Cancel", "Back", "Save"}));
}

TEST_F(ContainerWidgetTest, TheButtonsStandInTheirOrderFromEdgeToEdge) {
    show(wizardState::Mode);

    const auto* cancel = find<QPushButton>(QStringLiteral("Cancel"));
    const auto* back = find<QPushButton>(QStringLiteral("Back"));
    const auto* next = find<QPushButton>(QStringLiteral("Next"));
    const int row = cancel->parentWidget()->width();
    EXPECT_LT(cancel->geometry().right(), back->geometry().left());
    EXPECT_LT(back->geometry().right(), next->geometry().left());
    EXPECT_NEAR(cancel->geometry().left(), row - next->geometry().right(), 1);
    EXPECT_NEAR(2 * back->geometry().center().x(), row, 4);
}

TEST_F(ContainerWidgetTest, AButtonIsTheSameObjectEachTimeItIsThere) {
    show(wizardState::Mode);
    const auto* before = find<QPushButton>(QStringLiteral("Next"));
    show(wizardState::Summary);
    show(wizardState::Mode);

    EXPECT_EQ(find<QPushButton>(QStringLiteral("Next")), before);
}

TEST_F(ContainerWidgetTest, TheFocusStartsOnNextAndMovesOnToSave) {
    EXPECT_EQ(focusedLabel(), QStringLiteral("Next"));
    show(wizardState::Mode);
    EXPECT_EQ(focusedLabel(), QStringLiteral("Next"));
    show(wizardState::Summary);
    EXPECT_EQ(focusedLabel(), QStringLiteral("Save"));
}

TEST_F(ContainerWidgetTest, TheFocusWaitsOnAButtonAndGoesToNextWhenNextComes) {
    velmorindal.connectionState = ConnectionStatus::connecting;
    show(wizardState::Connect);
    EXPECT_EQ(focusedLabel(), QStringLiteral("Cancel"));

    velmorindal.connectionState = ConnectionStatus::connected;
    settle();

    EXPECT_EQ(focusedLabel(), QStringLiteral("Next"));
}

TEST_F(ContainerWidgetTest, TheFocusGoesStraightFromAButtonThatLeavesToOneThatStays) {
    show(wizardState::Connect);
    ASSERT_EQ(focusedLabel(), QStringLiteral("Back"));
    QStringList visited;
    const auto watching =
        QObject::connect(qApp, &QApplication::focusChanged, [&](QWidget* /*before*/, QWidget* now) {
            visited << (now == nullptr ? QString{} : now->property("text").toString());
        });

    velmorindal.connectionState = ConnectionStatus::connecting;
    settle();
    QObject::disconnect(watching);

    EXPECT_EQ(visited, QStringList{"Cancel"});
}

TEST_F(ContainerWidgetTest, AFocusThatTheUserHasMovedStaysWhereItIs) {
    velmorindal.connectionState = ConnectionStatus::connecting;
    show(wizardState::Connect);
    find<QPushButton>(QStringLiteral("Load"))->setFocus();

    velmorindal.connectionState = ConnectionStatus::connected;
    settle();

    EXPECT_EQ(focusedLabel(), QStringLiteral("Load"));
}

TEST_F(ContainerWidgetTest, AButtonThatTheUserHasComeBackToKeepsTheFocus) {
    velmorindal.connectionState = ConnectionStatus::connecting;
    show(wizardState::Connect);
    ASSERT_EQ(focusedLabel(), QStringLiteral("Cancel"));
    find<QPushButton>(QStringLiteral("Load"))->setFocus();
    find<QPushButton>(QStringLiteral("Cancel"))->setFocus();

    velmorindal.connectionState = ConnectionStatus::connected;
    settle();

    EXPECT_EQ(focusedLabel(), QStringLiteral("Cancel"));
}

TEST_F(ContainerWidgetTest, EnterPressesTheDefaultButtonFromAnyOtherControl) {
    show(wizardState::Mode);
    auto* radio = find<QRadioButton>(QStringLiteral("Direct Mode"));
    radio->setFocus();

    QTest::keyClick(radio, Qt::Key_Return);
    settle();

    EXPECT_EQ(container.currentState.get(), wizardState::Output);
}

TEST_F(ContainerWidgetTest, TheTabKeyReachesEveryControlOfAPage) {
    velmorindal.outputMode = OutputMode::LongShort;
    show(wizardState::Mode);
    QStringList reached;

    for (int i = 0; i < 8; ++i) {
        QTest::keyClick(window().focusWidget(), Qt::Key_Tab);
        reached << window().focusWidget()->property("text").toString();
    }

    for (const char* text :
         {"Long/Short Mode", "Enable short output", "Enable long output", "Cancel", "Back", "Next"}) {
        EXPECT_TRUE(reached.contains(QString::fromLatin1(text)))
            << text << " is not in " << reached.join(", ").toStdString();
    }
}

TEST_F(ContainerWidgetTest, AltWithALetterPressesAButtonWithoutAMarkInItsText) {
    show(wizardState::Output);

    QTest::keyClick(window().focusWidget(), Qt::Key_B, Qt::AltModifier);

    EXPECT_TRUE(eventually([this] { return container.currentState.get() == wizardState::Mode; }));
    for (const auto* button : window().findChildren<QPushButton*>()) {
        EXPECT_FALSE(button->text().contains(u'&'));
    }
}

TEST_F(ContainerWidgetTest, NoTwoControlsOfAPageShareAShortcut) {
    velmorindal.connectionState = ConnectionStatus::connected;
    for (const wizardState page : allWizardStates) {
        show(page);
        QStringList shortcuts;
        for (const auto* button : window().findChildren<QPushButton*>()) {
            if (button->isVisible()) {
                shortcuts << button->shortcut().toString();
            }
        }
        const auto count = shortcuts.size();
        EXPECT_EQ(shortcuts.removeDuplicates(), 0) << count;
    }
}

TEST_F(ContainerWidgetTest, NoPageNeedsToScrollInTheWindowAsItOpens) {
    velmorindal.outputMode = OutputMode::LongShort;
    velmorindal.shortEnabled = true;
    velmorindal.outputPath = OutputPath::USBKeyboard;
    velmorindal.connectionState = ConnectionStatus::writing;
    for (const wizardState page : allWizardStates) {
        show(page);
        for (const auto* scroller : window().findChildren<PageScroller*>()) {
            if (scroller->isVisible()) {
                EXPECT_EQ(scroller->verticalScrollBar()->maximum(), 0) << stepLabel(page);
                EXPECT_EQ(scroller->horizontalScrollBar()->maximum(), 0) << stepLabel(page);
            }
        }
    }
}

TEST_F(ContainerWidgetTest, ALineStaysComfortablyShortInAWideWindow) {
    window().resize(2400, 1200);
    settle();

    const auto* body = find<QLabel>(QString::fromUtf8(WelcomePanelView::body.data()));
    ASSERT_NE(body, nullptr);
    EXPECT_LE(body->width(), look::comfortableLineWidth());
}

TEST_F(ContainerWidgetTest, PagesSwapWithoutResizingTheWindow) {
    window().resize(900, 640);
    settle();

    for (const wizardState page : allWizardStates) {
        show(page);
        EXPECT_EQ(window().size(), (QSize{900, 640}));
    }
}

}  // namespace
}  // namespace velmorindal
