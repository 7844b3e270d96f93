#include "SlowCallWatch.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <utility>

#include "SerialPortTesting.h"

namespace velmorindal {
namespace {

using namespace std::chrono_literals;

TEST(SlowCallWatch, SpeaksUpOnceOnAnotherThreadWhenItsPatienceIsOver) {
    std::atomic<int> calls{0};
    std::atomic<std::thread::id> caller;
    {
        const SlowCallWatch watch{0ms, [&] {
                                      caller = std::this_thread::get_id();
                                      ++calls;
                                  }};
        EXPECT_TRUE(eventually([&] { return calls > 0; }));
    }
    EXPECT_EQ(calls, 1);
    EXPECT_NE(caller.load(), std::this_thread::get_id());
}

TEST(SlowCallWatch, ItsEndWaitsForTheReportThatIsRunning) {
    std::atomic<bool> begun{false};
    std::atomic<bool> reported{false};
    {
        const SlowCallWatch watch{0ms, [&] {
                                      begun = true;
                                      // Long enough for the end of the watch to come.
                                      std::this_thread::sleep_for(20ms);
                                      reported = true;
                                  }};
        ASSERT_TRUE(eventually([&] { return begun.load(); }));
    }
    EXPECT_TRUE(reported);
}

TEST(SlowCallWatch, ItsEndDoesNotWaitForTheEndOfItsThread) {
    struct Thread {
        std::atomic<bool> watchHasGone{false};
        std::atomic<bool> sawIt{false};
        std::atomic<bool> ended{false};
    };
    const auto thread = std::make_shared<Thread>();
    {
        // Destroyed by the thread, as the last thing that it does.
        std::shared_ptr<void> held{nullptr, [thread](void*) {
                                       thread->sawIt =
                                           eventually([&] { return thread->watchHasGone.load(); });
                                       thread->ended = true;
                                   }};
        const SlowCallWatch watch{24h, [held = std::move(held)] {}};
        // Long enough for the thread to fall asleep.
        std::this_thread::sleep_for(20ms);
    }
    thread->watchHasGone = true;

    EXPECT_TRUE(eventually([&] { return thread->ended.load(); }));
    EXPECT_TRUE(thread->sawIt);
}

TEST(SlowCallWatch, SaysNothingAndWaitsForNothingWhenTheCallHasEnded) {
    std::atomic<int> calls{0};
    {
        const SlowCallWatch watch{24h, [&] { ++calls; }};
    }
    EXPECT_EQ(calls, 0);
}

}  // namespace
}  // namespace velmorindal
