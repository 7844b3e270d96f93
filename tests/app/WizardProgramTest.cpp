#include <gmock/gmock.h>

#include <QApplication>
#include <QSettings>
#include <algorithm>

#include "PosixSystem.h"
#include "QtDispatch.h"
#include "Wizard.h"
#include "WizardTest.h"

namespace velmorindal {
namespace {

class WizardProgramTest : public testing::Test {
  protected:
    WizardProgramTest() {
        QSettings{}.clear();
        wizard.applicationDidFinishLaunching();
    }

    int departures = 0;
    PosixSystem system;
    QtDispatch dispatch;
    Wizard wizard{dispatch, system, {}, QtFilePanel::Kind::toolkit, [this] { ++departures; }};
};

TEST_F(WizardProgramTest, ClosingTheWindowShutsTheDeviceDownSaysFarewellAndLeavesOnce) {
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
    bool remembered = false;
    const auto watching = wizard.velmorindal().objectWillChange.subscribe(
        [&remembered] { remembered = QSettings{}.contains(QStringLiteral("Main Window")); });

    wizard.terminate();

    EXPECT_TRUE(remembered);
}

TEST_F(WizardProgramTest, EveryWindowIsGoneBeforeTheShutdownCanWait) {
    wizard.container().currentState = wizardState::Mode;
    QApplication::processEvents();
    wizard.container().cancelButtonPressed();
    QApplication::processEvents();
    std::vector<bool> visible;
    const auto watching = wizard.velmorindal().objectWillChange.subscribe([&visible] {
        visible.push_back(std::ranges::any_of(QApplication::topLevelWidgets(), &QWidget::isVisible));
    });

    wizard.terminate();

    EXPECT_THAT(visible, testing::ElementsAre(false));
}

}  // namespace
}  // namespace velmorindal
