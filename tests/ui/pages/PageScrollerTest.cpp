#include "PageScroller.h"

#include <QScrollBar>

#include "CalibrationPanelWidget.h"
#include "WindowTest.h"

namespace velmorindal {
namespace {

class PageScrollerTest : public WindowTest {
  protected:
    void SetUp() override {
        WindowTest::SetUp();
        scroller.resize(400, 160);
        scroller.show();
        scroller.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&scroller, patience));
        settle();
    }

    PageScroller scroller{new CalibrationPanelWidget{container.calibrationPanel},
                          QStringLiteral("Calibration")};
};

TEST_F(PageScrollerTest, APageHasANameAndTakesTheFocusWhileItIsScrolled) {
    ASSERT_GT(scroller.verticalScrollBar()->maximum(), 0);
    EXPECT_EQ(scroller.focusPolicy(), Qt::StrongFocus);
    EXPECT_EQ(scroller.accessibleName(), QStringLiteral("Calibration"));

    scroller.resize(900, 1200);
    settle();
    ASSERT_EQ(scroller.verticalScrollBar()->maximum(), 0);
    EXPECT_EQ(scroller.focusPolicy(), Qt::NoFocus);
}

}  // namespace
}  // namespace velmorindal
