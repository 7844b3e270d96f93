#include "SlowCallWatch.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "SerialPortTesting.h"

namespace velmorindal {
namespace {

using namespace std::chrono_literals;

TEST(SlowCallWatch, SpeaksUpOnceOnAnotherThreadWhenItsPatienceIsOver) {
    std::atomic<int> told{0};
    std::atomic<std::thread::id> teller;
    {
        const SlowCallWatch watch{0ms, [&] {
                                      teller = std::this_thread::get_id();
                                      ++told;
                                  }};
        EXPECT_TRUE(comesTrue([&] { return told > 0; }));
    }
    EXPECT_EQ(told, 1);
    EXPECT_NE(teller.load(), std::this_thread::get_id());
}

TEST(SlowCallWatch, SaysNothingAndWaitsForNothingWhenTheCallHasEnded) {
    std::atomic<int> told{0};
    {
        const SlowCallWatch watch{24h, [&] { ++told; }};
    }
    EXPECT_EQ(told, 0);
}

}  // namespace
}  // namespace velmorindal
