#include "QuitSignals.h"

#include <gtest/gtest.h>

#include <QTest>
#include <csignal>

namespace velmorindal {
namespace {

TEST(QuitSignals, ASignalToEndReachesTheEventLoopAsOneCall) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        int calls = 0;
        const QuitSignals quitSignals{[&calls] { ++calls; }};

        ASSERT_EQ(std::raise(signal), 0);
        EXPECT_EQ(calls, 0);

        EXPECT_TRUE(QTest::qWaitFor([&calls] { return calls > 0; }, 30'000));
        EXPECT_EQ(calls, 1);
    }
}

}  // namespace
}  // namespace velmorindal
