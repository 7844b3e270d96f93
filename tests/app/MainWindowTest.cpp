#include "MainWindow.h"

#include <QScreen>
#include <QWindow>
#include <algorithm>
#include <chrono>

#include "ApplicationFont.h"
#include "Look.h"
#include "PageWidget.h"
#include "WindowTest.h"

namespace velmorindal {
namespace {

class MainWindowTest : public WindowTest {
  protected:
    /// Whether a screen reader was given a text with this in it.
    bool hasSaid(const char* words) {
        const auto texts = window().findChildren<SpokenText*>();
        return std::ranges::any_of(texts, [words](const SpokenText* text) {
            return text->accessibleName().contains(QLatin1String{words});
        });
    }

    int widestPage() { return window().findChild<PageWidget*>()->maximumWidth(); }

    void humArrives(double seconds) {
        ++velmorindal.readingsReceived;
        velmorindal.detectedDuration = seconds;
        settle();
    }
};

TEST_F(MainWindowTest, ItsTitleIsThatOfTheProgram) {
    EXPECT_EQ(window().windowTitle(), QStringLiteral("Velmorindal Setup"));
}

TEST_F(MainWindowTest, ItOpensInTheMiddleOfTheScreenAt480By300OrTheSmallestSizeThatClipsNothing) {
    EXPECT_GE(window().width(), 480);
    EXPECT_GE(window().height(), 300);
    EXPECT_EQ(window().size(), window().minimumSize());
    const QPoint middle = window().screen()->availableGeometry().center();
    EXPECT_LE((window().geometry().center() - middle).manhattanLength(), 4);
}

TEST_F(MainWindowTest, ItOpensAt480By300WhereEveryPageFitsIntoThat) {
    const ApplicationFont font;
    font.setPixelSize(4);
    closeWindow();
    QSettings{}.clear();

    openWindow();

    EXPECT_EQ(window().size(), (QSize{480, 300}));
}

TEST_F(MainWindowTest, ItLeavesATenthOfTheScreenFreeHoweverLargeTheFontIs) {
    const ApplicationFont font;

    font.setPixelSize(60);
    settle();

    EXPECT_EQ(window().minimumSize(), window().screen()->availableSize() * 9 / 10);
}

TEST_F(MainWindowTest, ItsSmallestSizeFitsTheScreenThatItsFrameIsRestoredOn) {
    const QScreen* const small = QGuiApplication::screens().at(1);
    window().setMinimumSize(1, 1);
    window().setGeometry(QRect{small->geometry().topLeft(), QSize{370, 280}});
    window().saveFrame();
    closeWindow();

    openWindow();

    EXPECT_EQ(window().screen(), small);
    EXPECT_EQ(window().minimumSize(), small->availableSize() * 9 / 10);
    EXPECT_EQ(window().size(), (QSize{370, 280}));
}

TEST_F(MainWindowTest, ItsSmallestSizeFitsEachScreenThatItIsMovedTo) {
    const QSize onTheFirst = window().minimumSize();

    window().windowHandle()->setScreen(QGuiApplication::screens().at(1));
    settle();
    EXPECT_EQ(window().minimumSize(), (QSize{400, 300} * 9 / 10));

    window().windowHandle()->setScreen(QGuiApplication::screens().at(0));
    settle();
    EXPECT_EQ(window().minimumSize(), onTheFirst);
}

TEST_F(MainWindowTest, ItHasATitleAndCanBeClosedMinimizedAndResized) {
    const Qt::WindowFlags wanted =
        Qt::WindowTitleHint | Qt::WindowCloseButtonHint | Qt::WindowMinimizeButtonHint;
    EXPECT_EQ(window().windowType(), Qt::Window);
    EXPECT_EQ(window().windowFlags() & wanted, wanted);
    EXPECT_EQ(window().maximumSize(), (QSize{QWIDGETSIZE_MAX, QWIDGETSIZE_MAX}));
}

TEST_F(MainWindowTest, ClosingItAsksTheApplicationToEnd) {
    window().close();

    EXPECT_EQ(closeRequests, 1);
    EXPECT_TRUE(window().isVisible());
}

TEST_F(MainWindowTest, TheQuitKeysAskTheApplicationToEnd) {
    QTest::keyClick(&window(), Qt::Key_Q, Qt::ControlModifier);

    EXPECT_EQ(closeRequests, 1);
}

TEST_F(MainWindowTest, ItRemembersItsFrameAMomentAfterAChange) {
    window().setGeometry(60, 70, window().minimumWidth() + 10, window().minimumHeight() + 40);
    const QRect chosen = window().geometry();

    EXPECT_TRUE(eventually([this] {
        return QSettings{}.value(QStringLiteral("Main Window")).toByteArray() == window().saveGeometry();
    }));
    closeWindow();
    openWindow();

    EXPECT_EQ(window().geometry(), chosen);
}

TEST_F(MainWindowTest, HidingTheWindowCancelsAPendingMove) {
    auto* moment = window().findChild<QTimer*>(QStringLiteral("frame"));
    ASSERT_NE(moment, nullptr);
    ASSERT_TRUE(eventually([&] { return !moment->isActive(); }));
    // It must not run out before it is looked at.
    moment->setInterval(std::chrono::hours{1});

    window().move(window().x() + 30, window().y() + 30);
    EXPECT_TRUE(eventually([&] { return moment->isActive(); }));
    window().hide();

    EXPECT_FALSE(moment->isActive());
}

TEST_F(MainWindowTest, AMoveWhileItIsHiddenIsNotTheUsers) {
    const auto* moment = window().findChild<QTimer*>(QStringLiteral("frame"));
    ASSERT_NE(moment, nullptr);
    window().hide();
    QMoveEvent moved{QPoint{40, 40}, window().pos()};
    QResizeEvent resized{QSize{900, 900}, window().size()};

    QApplication::sendEvent(&window(), &moved);
    QApplication::sendEvent(&window(), &resized);

    EXPECT_FALSE(moment->isActive());
}

TEST_F(MainWindowTest, AFrameOutsideEveryScreenComesBackOntoOne) {
    window().move(5000, 4000);
    settle();
    window().saveFrame();
    closeWindow();

    openWindow();

    EXPECT_TRUE(window().screen()->geometry().contains(window().geometry().center()));
}

TEST_F(MainWindowTest, ARememberedFrameThatCannotBeReadIsIgnored) {
    QSettings{}.setValue(QStringLiteral("Main Window"), QByteArrayLiteral("no frame"));
    closeWindow();

    openWindow();

    EXPECT_EQ(window().size(), window().minimumSize());
}

TEST_F(MainWindowTest, AHumWhileAnotherWindowIsActiveIsNotSaidLater) {
    show(wizardState::Calibration);
    velmorindal.pollingState = PollingState::duration;
    settle();
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(eventually([this] { return !window().isActiveWindow(); }));
    humArrives(1.6);

    window().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window(), patience));
    settle();
    humArrives(0.4);

    EXPECT_TRUE(hasSaid("0.40 seconds, short"));
    EXPECT_FALSE(hasSaid("1.60 seconds"));
}

TEST_F(MainWindowTest, ItGrowsWithTheFont) {
    const ApplicationFont font;
    const QSize sizeBefore = window().minimumSize();
    EXPECT_EQ(widestPage(), look::comfortableLineWidth());

    font.scale(1.2);
    settle();

    EXPECT_EQ(widestPage(), look::comfortableLineWidth());

    const QSize sizeAfter = window().minimumSize();
    EXPECT_GT(sizeAfter.width() * sizeAfter.height(), sizeBefore.width() * sizeBefore.height());
}

/// Notes, in order, what a screen reader is given when a window becomes active.
class FirstAndThen final : public QObject {
  public:
    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() == QEvent::Show && qobject_cast<SpokenText*>(object) != nullptr) {
            noted << QStringLiteral("announcement");
        }
        return false;
    }

    QStringList noted;
};

TEST_F(MainWindowTest, WhatHasHappenedMeanwhileIsSaidAfterTheFocus) {
    velmorindal.connectionState = ConnectionStatus::connecting;
    show(wizardState::Connect);
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(eventually([this] { return !window().isActiveWindow(); }));
    velmorindal.connectionState = ConnectionStatus::connected;
    settle();
    FirstAndThen order;
    qApp->installEventFilter(&order);
    const auto connection =
        QObject::connect(qApp, &QApplication::focusChanged, [&order](QWidget* /*before*/, QWidget* now) {
            order.noted << (now == nullptr ? QStringLiteral("nothing") : QStringLiteral("focus"));
        });

    window().activateWindow();
    EXPECT_TRUE(eventually([&] { return order.noted.contains(QStringLiteral("announcement")); }));

    QObject::disconnect(connection);
    qApp->removeEventFilter(&order);
    EXPECT_EQ(order.noted, (QStringList{QStringLiteral("focus"), QStringLiteral("announcement")}));
}

}  // namespace
}  // namespace velmorindal
