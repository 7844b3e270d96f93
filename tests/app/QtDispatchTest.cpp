#include "QtDispatch.h"

#include <gmock/gmock.h>
#include <pthread.h>

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QTest>
#include <QThread>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <future>
#include <memory>
#include <thread>
#include <vector>

#include "PrintedLines.h"

namespace velmorindal {
namespace {

using testing::ElementsAre;
using testing::MatchesRegex;

constexpr int bound = 600'000;

/// Turns the event loop until the future has its value.
template <typename Value>
bool becomesReady(const std::future<Value>& future) {
    return QTest::qWaitFor(
        [&] { return future.wait_for(std::chrono::seconds{0}) == std::future_status::ready; }, bound);
}

TEST(QtDispatch, WorkRunsOnTheMainThreadOnALaterTurnOfTheEventLoop) {
    QtDispatch dispatch;
    const QThread* ranOn = nullptr;

    dispatch.postToMain([&] { ranOn = QThread::currentThread(); });

    EXPECT_EQ(ranOn, nullptr);
    ASSERT_TRUE(QTest::qWaitFor([&] { return ranOn != nullptr; }, bound));
    EXPECT_EQ(ranOn, QCoreApplication::instance()->thread());
}

TEST(QtDispatch, WorkRunsInTheOrderSubmittedWhetherOrNotSomeoneWaitsForIt) {
    QtDispatch dispatch;
    std::vector<int> order;
    bool ended = false;

    dispatch.runInBackground([&] {
        dispatch.postToMain([&] { order.push_back(1); });
        dispatch.runOnMainAndWait([&] { order.push_back(2); });
        dispatch.postToMain([&] { order.push_back(3); });
        dispatch.runOnMainAndWait([&] {
            order.push_back(4);
            ended = true;
        });
    });

    ASSERT_TRUE(QTest::qWaitFor([&] { return ended; }, bound));
    EXPECT_THAT(order, ElementsAre(1, 2, 3, 4));
}

TEST(QtDispatch, WaitingForMainQueueWorkEndsOnlyAfterIt) {
    QtDispatch dispatch;
    bool ran = false;
    std::promise<bool> seen;
    std::future<bool> seenAfterwards = seen.get_future();

    dispatch.runInBackground([&] {
        dispatch.runOnMainAndWait([&] { ran = true; });
        seen.set_value(ran);
    });

    ASSERT_TRUE(becomesReady(seenAfterwards));
    EXPECT_TRUE(seenAfterwards.get());
}

TEST(QtDispatch, AMainThreadThatWaitsLetsABackgroundRunWaitForTheMainQueue) {
    QtDispatch dispatch;
    std::atomic<bool> ended{false};

    dispatch.runInBackground([&] {
        dispatch.runOnMainAndWait([] {});
        ended = true;
    });

    // No event loop turns here, as in a wait on the main thread.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds{bound};
    while (!ended && std::chrono::steady_clock::now() < deadline) {
        dispatch.runPendingMainWork();
        std::this_thread::yield();
    }
    EXPECT_TRUE(ended);
}

/// Notices that an event, such as one of the user's, has been handled.
class Receiver final : public QObject {
  public:
    bool event(QEvent* event) override {
        handled = true;
        return QObject::event(event);
    }

    bool handled = false;
};

/// Like a window: its refresh posts the event that paints the change.
class Screen final : public QObject {
  public:
    static constexpr auto refresh = QEvent::User;
    static constexpr auto paint = static_cast<QEvent::Type>(QEvent::User + 1);

    void post(QEvent::Type type) {
        QCoreApplication::postEvent(this, std::make_unique<QEvent>(type).release(), Qt::LowEventPriority);
    }

    bool event(QEvent* event) override {
        if (event->type() == refresh) {
            post(paint);
        }
        // Long enough for a thread to start; nothing starts one yet.
        std::this_thread::sleep_for(std::chrono::milliseconds{20});
        painted = painted || event->type() == paint;
        return QObject::event(event);
    }

    std::atomic<bool> painted = false;
};

TEST(QtDispatch, BackgroundWorkStartsWhenTheRefreshThatIsDueHasBeenPainted) {
    QtDispatch dispatch;
    Screen screen;
    std::promise<bool> seen;
    std::future<bool> paintedFirst = seen.get_future();

    dispatch.runInBackground([&] { seen.set_value(screen.painted); });
    screen.post(Screen::refresh);

    ASSERT_TRUE(becomesReady(paintedFirst));
    EXPECT_TRUE(paintedFirst.get());
}

TEST(QtDispatch, RunningPendingWorkHandlesNoOtherEvent) {
    QtDispatch dispatch;
    Receiver receiver;
    bool worked = false;
    QCoreApplication::postEvent(&receiver, std::make_unique<QEvent>(QEvent::User).release());
    dispatch.postToMain([&] { worked = true; });

    dispatch.runPendingMainWork();

    EXPECT_TRUE(worked);
    EXPECT_FALSE(receiver.handled);
    QCoreApplication::processEvents();
    EXPECT_TRUE(receiver.handled);
}

TEST(QtDispatch, RunningPendingWorkLeavesWhatThatWorkSubmitsForLater) {
    QtDispatch dispatch;
    std::vector<int> order;
    dispatch.postToMain([&] {
        order.push_back(1);
        dispatch.postToMain([&] { order.push_back(2); });
    });

    dispatch.runPendingMainWork();
    EXPECT_THAT(order, ElementsAre(1));

    EXPECT_TRUE(QTest::qWaitFor([&] { return order.size() == 2; }, bound));
}

TEST(QtDispatch, WorkThatWaitsRunsTheWorkBehindItOnce) {
    QtDispatch dispatch;
    std::vector<int> order;
    dispatch.postToMain([&] {
        dispatch.runPendingMainWork();
        order.push_back(2);
    });
    dispatch.postToMain([&] { order.push_back(1); });

    dispatch.runPendingMainWork();
    QCoreApplication::processEvents();

    EXPECT_THAT(order, ElementsAre(1, 2));
}

TEST(QtDispatch, BackgroundWorkRunsOnASeparateThread) {
    QtDispatch dispatch;
    std::promise<std::thread::id> id;
    auto ranOn = id.get_future();

    dispatch.runInBackground([&] { id.set_value(std::this_thread::get_id()); });

    ASSERT_TRUE(becomesReady(ranOn));
    EXPECT_NE(ranOn.get(), std::this_thread::get_id());
}

/// While one exists, the system has no room for another thread's stack.
class NoRoomForThreads {
  public:
    NoRoomForThreads() {
        ::pthread_getattr_default_np(&before_);
        pthread_attr_t huge{};
        ::pthread_getattr_default_np(&huge);
        ::pthread_attr_setstacksize(&huge, std::size_t{1} << 60U);
        EXPECT_EQ(::pthread_setattr_default_np(&huge), 0);
        ::pthread_attr_destroy(&huge);
    }
    NoRoomForThreads(const NoRoomForThreads&) = delete;
    NoRoomForThreads& operator=(const NoRoomForThreads&) = delete;
    ~NoRoomForThreads() {
        ::pthread_setattr_default_np(&before_);
        ::pthread_attr_destroy(&before_);
    }

  private:
    pthread_attr_t before_{};
};

TEST(QtDispatch, BackgroundWorkThatGetsNoThreadStartsOnceThereIsOne) {
    QtDispatch dispatch;
    PrintedLines warnings{PrintStream::standardError};
    for (const char* const which : {"the first shortage", "another"}) {
        SCOPED_TRACE(which);
        std::atomic<bool> begun = false;
        {
            const NoRoomForThreads shortage;
            dispatch.runInBackground([&] { begun = true; });
            dispatch.runPendingMainWork();
            // One pass for the refresh, and one for the start.
            QCoreApplication::processEvents();
            QCoreApplication::processEvents();
            EXPECT_FALSE(begun);
        }
        EXPECT_THAT(warnings.take(),
                    MatchesRegex("No thread can be started for work with the device: [^\n]+\n"));
        EXPECT_TRUE(QTest::qWaitFor([&] { return begun.load(); }, bound));
        EXPECT_EQ(warnings.take(), "");
    }
}

}  // namespace
}  // namespace velmorindal
