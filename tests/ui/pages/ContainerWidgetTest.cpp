#include "ContainerWidget.h"

#include <QLayout>
#include <QRadioButton>
#include <QScrollBar>

#include "KeyList.h"
#include "Look.h"
#include "NavigationRow.h"
#include "PageScroller.h"
#include "StepColumn.h"
#include "WindowTest.h"

namespace velmorindal {
namespace {

class ContainerWidgetTest : public WindowTest {
  protected:
    /// The text of whatever has the focus.
    QString focusedText() { return window().focusWidget()->property("text").toString(); }

    QLabel* step(wizardState state) { return find<QLabel>(QString::fromUtf8(stepLabel(state).data())); }
};

TEST_F(ContainerWidgetTest, TheStepsStandLeftOfThePageAndTheButtonsBelowIt) {
    for (const wizardState state : allWizardStates) {
        show(state);
        const auto* scroller = find<PageScroller>(QString::fromUtf8(stepLabel(state).data()));
        ASSERT_NE(scroller, nullptr);
        const QRect steps = placeOf(window().findChild<StepColumn*>());
        const QRect buttons = placeOf(window().findChild<NavigationRow*>());
        EXPECT_LT(steps.right(), placeOf(scroller).left());
        EXPECT_LT(steps.right(), buttons.left());
        EXPECT_LT(placeOf(scroller).bottom(), buttons.top());
    }
}

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

TEST_F(ContainerWidgetTest, TheFocusStartsOnNext) {
    EXPECT_EQ(focusedText(), QStringLiteral("Next"));
}

TEST_F(ContainerWidgetTest, AfterNextTheFocusIsOnTheFirstControlOrOnTheHeading) {
    press(QStringLiteral("Next"));
    EXPECT_EQ(focusedText(), QStringLiteral("It's time to connect to the Velmorindal."));
    finishBackground();
    velmorindal.connectionState = ConnectionStatus::connected;
    container.dismiss(DialogId::generic);
    settle();
    EXPECT_EQ(focusedText(), QStringLiteral("It's time to connect to the Velmorindal."));

    for (const char* text : {"Direct Mode", "Switch Output", "Show Clarity",
                             "You have configured your Velmorindal with the following parameters:"}) {
        press(QStringLiteral("Next"));
        EXPECT_EQ(focusedText(), QString::fromLatin1(text));
    }
}

TEST_F(ContainerWidgetTest, TheFocusComesToItsPlaceWithoutAStopOnTheWay) {
    velmorindal.connectionState = ConnectionStatus::connected;
    velmorindal.outputMode = OutputMode::LongShort;
    velmorindal.shortEnabled = true;
    velmorindal.outputPath = OutputPath::USBKeyboard;
    QStringList stops;
    const auto connection =
        QObject::connect(qApp, &QApplication::focusChanged, [&stops](QWidget* /*before*/, QWidget* now) {
            stops << (now == nullptr ? QStringLiteral("nothing") : now->property("text").toString());
        });
    const auto passes = [this, &stops](const char* button, const char* target) {
        stops.clear();
        press(QString::fromLatin1(button));
        EXPECT_EQ(stops, QStringList{QString::fromLatin1(target)});
    };

    show(wizardState::Output);
    find<KeyList>(QStringLiteral("Short hum keystroke"))->setFocus();
    passes("Back", "Back");
    find<QRadioButton>(QStringLiteral("Long/Short Mode"))->setFocus();
    passes("Next", "USB Keyboard");
    passes("Next", "Show Clarity");
    passes("Next", "You have configured your Velmorindal with the following parameters:");

    QObject::disconnect(connection);
}

TEST_F(ContainerWidgetTest, AfterASaveTheFocusIsOnClose) {
    show(wizardState::Summary);
    velmorindal.connectionState = ConnectionStatus::writing;
    settle();

    velmorindal.connectionState = ConnectionStatus::connected;
    velmorindal.justSaved = true;
    settle();

    EXPECT_EQ(focusedText(), QStringLiteral("Close"));
}

TEST_F(ContainerWidgetTest, AFocusThatTheUserHasMovedStaysWhereItIs) {
    velmorindal.connectionState = ConnectionStatus::connecting;
    show(wizardState::Connect);
    find<QPushButton>(QStringLiteral("Load"))->setFocus();

    velmorindal.connectionState = ConnectionStatus::connected;
    settle();

    EXPECT_EQ(focusedText(), QStringLiteral("Load"));
}

TEST_F(ContainerWidgetTest, TheButtonsStandWhereTheTextsDoAlsoInAWideWindow) {
    window().resize(2000, 900);
    settle();
    for (const wizardState page : {wizardState::Mode, wizardState::Summary}) {
        show(page);
        const auto* cancel = find<QPushButton>(QStringLiteral("Cancel"));
        EXPECT_EQ(placeOf(cancel).x(), placeOf(pageOnScreen().findChild<QLabel*>()).x());
    }
}

TEST_F(ContainerWidgetTest, EnterPressesTheDefaultButtonFromAnyOtherControl) {
    for (const Qt::Key enter : {Qt::Key_Return, Qt::Key_Enter}) {
        show(wizardState::Mode);
        auto* radio = find<QRadioButton>(QStringLiteral("Direct Mode"));
        radio->setFocus();

        QTest::keyClick(radio, enter);
        settle();

        EXPECT_EQ(container.currentState.get(), wizardState::Output);
    }
}

TEST_F(ContainerWidgetTest, EnterThatIsHeldLeadsOnePageOn) {
    show(wizardState::Mode);
    auto* radio = find<QRadioButton>(QStringLiteral("Direct Mode"));
    radio->setFocus();
    QKeyEvent held{QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString{}, true};

    QApplication::sendEvent(radio, &held);
    settle();

    EXPECT_EQ(container.currentState.get(), wizardState::Mode);
}

TEST_F(ContainerWidgetTest, EnterOnAButtonOfThePagePressesThatButton) {
    velmorindal.connectionState = ConnectionStatus::connected;
    show(wizardState::Connect);
    QTest::keyClick(find<QPushButton>(QStringLiteral("Load")), Qt::Key_Return);
    EXPECT_TRUE(filePanel.isOpen());
    EXPECT_EQ(container.currentState.get(), wizardState::Connect);

    show(wizardState::Calibration);
    QTest::keyClick(find<QPushButton>(QStringLiteral("Show Clarity")), Qt::Key_Return);
    EXPECT_EQ(container.currentState.get(), wizardState::Calibration);
    EXPECT_EQ(container.calibrationPanel.runsBegun(), 1U);
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
    show(wizardState::Welcome);
    EXPECT_EQ(find<QPushButton>(QStringLiteral("Close"))->shortcut(), QKeySequence{Qt::ALT | Qt::Key_E});
    show(wizardState::Connect);
    QTest::keyClick(window().focusWidget(), Qt::Key_O, Qt::AltModifier);
    EXPECT_TRUE(eventually([this] { return filePanel.isOpen(); }));
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

TEST_F(ContainerWidgetTest, EnterOnTheSummaryAsksWhetherToSave) {
    show(wizardState::Summary);
    QTest::keyClick(window().focusWidget(), Qt::Key_Return);
    EXPECT_TRUE(container.showingSaveAlert.get());
}

TEST_F(ContainerWidgetTest, ASingleButtonKeepsItsEndOfTheRow) {
    show(wizardState::Summary);
    const int left = find<QPushButton>(QStringLiteral("Cancel"))->x();
    velmorindal.connectionState = ConnectionStatus::writing;
    settle();
    EXPECT_EQ(navigation(), QStringList{"Cancel"});
    EXPECT_EQ(find<QPushButton>(QStringLiteral("Cancel"))->x(), left);
}

TEST_F(ContainerWidgetTest, AButtonStandsInItsPlaceBeforeAnyOtherEvent) {
    NavigationRow row{container};
    row.resize(800, 100);
    row.show();
    settle();
    container.currentState = wizardState::Output;
    row.refresh([] {});
    EXPECT_GT(row.button(ButtonOptions::Next)->x(), 400);
}

TEST_F(ContainerWidgetTest, TheRowHasRoomForThreeButtonsWhereFewerAreShown) {
    NavigationRow row{container};
    row.show();
    settle();
    const int least = row.minimumSizeHint().width();
    container.currentState = wizardState::Output;
    row.refresh([] {});
    EXPECT_GE(least, row.layout()->minimumSize().width());
}

TEST_F(ContainerWidgetTest, TheFocusOfAControlThatGoesWhileAnotherWindowIsActiveIsOnOneThatIsThere) {
    velmorindal.outputPath = OutputPath::USBKeyboard;
    show(wizardState::Output);
    find<KeyList>(QStringLiteral("Keystroke"))->setFocus();
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(eventually([this] { return !window().isActiveWindow(); }));

    velmorindal.outputPath = OutputPath::Switch;
    settle();

    ASSERT_NE(window().focusWidget(), nullptr);
    EXPECT_TRUE(window().focusWidget()->isVisible());
}

TEST_F(ContainerWidgetTest, TheStepsStandAtTheTopOfTheirColumnAndTheVersionAtItsFoot) {
    window().resize(window().width(), 1200);
    settle();
    const auto* column = window().findChild<StepColumn*>();
    const auto* version = find<QLabel>(QStringLiteral("Version 1.1M"));

    EXPECT_LT(step(wizardState::Summary)->geometry().bottom(), 600);
    EXPECT_GT(version->geometry().bottom(), column->height() - 2 * look::spacing());
    EXPECT_EQ(version->height(), version->sizeHint().height());
}

}  // namespace
}  // namespace velmorindal
