#include "ConnectPanelWidget.h"

#include "ProgressBarWidget.h"
#include "WindowTest.h"

namespace velmorindal {
namespace {

class ConnectPanelWidgetTest : public WindowTest {
  protected:
    void SetUp() override {
        WindowTest::SetUp();
        show(wizardState::Connect);
    }

    ProgressBarWidget* bar() { return find<ProgressBarWidget>(QStringLiteral("Connection progress")); }
};

TEST_F(ConnectPanelWidgetTest, TheStatusLineAndTheBarFollowTheConnection) {
    EXPECT_TRUE(showsText(QStringLiteral("Initializing...")));
    EXPECT_EQ(bar(), nullptr);

    velmorindal.connectionState = ConnectionStatus::connecting;
    velmorindal.readWriteProgress = 3.0;
    settle();

    EXPECT_TRUE(showsText(QStringLiteral("Connecting...")));
    ASSERT_NE(bar(), nullptr);
    EXPECT_EQ(bar()->targetFraction(), 0.5);

    velmorindal.connectionState = ConnectionStatus::connected;
    settle();

    EXPECT_TRUE(showsText(QStringLiteral("Connection successful. Press \"Next\" to continue.")));
    EXPECT_EQ(bar(), nullptr);
}

TEST_F(ConnectPanelWidgetTest, TheReasonOfAFailureStandsBelowTheStatusLine) {
    container.connectPanel.keepReason("The reason.");
    velmorindal.connectionState = ConnectionStatus::error;
    settle();

    EXPECT_TRUE(showsText(QStringLiteral("The reason.")));
}

TEST_F(ConnectPanelWidgetTest, TheProgressDoesNotMoveWhatStandsBelowIt) {
    const int before = find<QPushButton>(QStringLiteral("Load"))->geometry().top();

    velmorindal.connectionState = ConnectionStatus::connecting;
    settle();

    EXPECT_EQ(find<QPushButton>(QStringLiteral("Load"))->geometry().top(), before);
}

}  // namespace
}  // namespace velmorindal
