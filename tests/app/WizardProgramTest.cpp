#include <gmock/gmock.h>

#include <QApplication>
#include <QPushButton>
#include <QSettings>
#include <QTest>
#include <algorithm>

#include "QtDispatch.h"
#include "TemporaryDirectory.h"
#include "UnhurriedSystem.h"
#include "VirtualDongle.h"
#include "Wizard.h"
#include "WizardTest.h"

namespace velmorindal {
namespace {

class WizardProgramTest : public testing::Test {
  protected:
    static constexpr int bound = 600'000;

    WizardProgramTest() { QSettings{}.clear(); }

    void TearDown() override {
        // Here the end of the program is not the end of the process.
        EXPECT_TRUE(QTest::qWaitFor([this] { return !wizard.container().hasBackgroundWork(); }, bound));
    }

    QPushButton* button(const char* label) {
        for (auto* button : wizard.window().findChildren<QPushButton*>()) {
            if (button->isVisible() && button->text() == QLatin1String{label}) {
                return button;
            }
        }
        return nullptr;
    }

    /// Presses a button as soon as it is there.
    void press(const char* label) {
        ASSERT_TRUE(QTest::qWaitFor([&] { return button(label) != nullptr; }, bound)) << label;
        button(label)->click();
        QApplication::processEvents();
    }

    TemporaryDirectory directory;
    VirtualDongle dongle{directory.path()};
    int departures = 0;
    UnhurriedSystem system;
    QtDispatch dispatch;
    Wizard wizard{
        dispatch, system, {.directory = directory.path().string() + "/"}, QtFilePanel::Kind::toolkit, [this] {
            ++departures;
        }};
};

TEST_F(WizardProgramTest, NextConnectsAndTheWindowFollows) {
    wizard.applicationDidFinishLaunching();

    press("Next");

    EXPECT_TRUE(QTest::qWaitFor(
        [this] { return wizard.velmorindal().connectionState.get() == ConnectionStatus::connected; }, bound));
    press("Next");
    EXPECT_EQ(wizard.container().currentState.get(), wizardState::Mode);
    wizard.terminate();
}

TEST_F(WizardProgramTest, ClosingTheWindowShutsTheDeviceDownSaysFarewellAndLeavesOnce) {
    wizard.applicationDidFinishLaunching();

    const auto lines = linesPrintedBy([this] {
        wizard.window().close();
        wizard.window().close();
    });

    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.front(), "I'm being told to go now.");
    EXPECT_EQ(lines.back(), "Farewell");
    EXPECT_EQ(departures, 1);
}

TEST_F(WizardProgramTest, TheFrameIsRememberedBeforeThePortIsClosed) {
    wizard.applicationDidFinishLaunching();
    bool remembered = false;
    const auto watching = wizard.velmorindal().objectWillChange.subscribe(
        [&remembered] { remembered = QSettings{}.contains(QStringLiteral("Main Window")); });

    wizard.terminate();

    EXPECT_TRUE(remembered);
}

TEST_F(WizardProgramTest, EveryWindowIsGoneBeforeTheShutdownCanWait) {
    wizard.applicationDidFinishLaunching();
    wizard.container().currentState = wizardState::Mode;
    QApplication::processEvents();
    press("Cancel");
    std::vector<bool> visible;
    const auto watching = wizard.velmorindal().objectWillChange.subscribe([&visible] {
        visible.push_back(std::ranges::any_of(QApplication::topLevelWidgets(), &QWidget::isVisible));
    });

    wizard.terminate();

    EXPECT_THAT(visible, testing::ElementsAre(false));
}

TEST_F(WizardProgramTest, YesToClosingEndsTheProgram) {
    wizard.applicationDidFinishLaunching();
    wizard.container().currentState = wizardState::Mode;
    QApplication::processEvents();

    press("Cancel");
    press("Yes");

    EXPECT_EQ(departures, 1);
}

TEST_F(WizardProgramTest, CloseEndsTheProgram) {
    wizard.applicationDidFinishLaunching();

    press("Close");

    EXPECT_EQ(departures, 1);
}

}  // namespace
}  // namespace velmorindal
