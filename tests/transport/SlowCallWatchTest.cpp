#include "SlowCallWatch.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

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

TEST(SlowCallWatch, SaysNothingAndWaitsForNothingWhenTheCallHasEnded) {
    std::atomic<int> calls{0};
    {
        const SlowCallWatch watch{24h, [&] { ++calls; }};
    }
    EXPECT_EQ(calls, 0);
}

}  // namespace
}  // namespace velmorindal
