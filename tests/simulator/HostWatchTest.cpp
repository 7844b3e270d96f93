#include "HostWatch.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>

#include "RawHost.h"
#include "TemporaryDirectory.h"

namespace velmorindal {
namespace {

class HostWatching : public testing::Test {
  protected:
    TemporaryDirectory directory_;
    const std::filesystem::path port_ = directory_.path() / "port";
    std::ofstream file_{port_};
    HostWatch watch_{port_};
    const HostWatch::Clock::time_point start_ = HostWatch::Clock::now();
};

TEST_F(HostWatching, APortThatNobodyOpenedIsNotLeft) {
    EXPECT_FALSE(watch_.portWasLeft(start_ + HostWatch::absence));
    EXPECT_EQ(watch_.due(), std::nullopt);
}

TEST_F(HostWatching, APortIsLeftAfterAHostsAbsenceAndOnlyOnce) {
    { const RawHost host{port_}; }
    EXPECT_FALSE(watch_.portWasLeft(start_));
    EXPECT_EQ(watch_.due(), start_ + HostWatch::absence);
    EXPECT_TRUE(watch_.portWasLeft(start_ + HostWatch::absence));
    EXPECT_FALSE(watch_.portWasLeft(start_ + 2 * HostWatch::absence));
}

TEST_F(HostWatching, AHostThatComesBackInTimeWasNeverGone) {
    { const RawHost host{port_}; }
    EXPECT_FALSE(watch_.portWasLeft(start_));
    const RawHost again{port_};
    EXPECT_FALSE(watch_.portWasLeft(start_ + HostWatch::absence));
}

TEST_F(HostWatching, AnOpenedPortIsNoticedOnceForEachTimeThatItIsAsked) {
    EXPECT_FALSE(watch_.portWasOpened(start_));
    {
        const RawHost host{port_};
        EXPECT_TRUE(watch_.portWasOpened(start_));
        EXPECT_FALSE(watch_.portWasOpened(start_));
    }
    EXPECT_FALSE(watch_.portWasOpened(start_));
    EXPECT_TRUE(watch_.portWasLeft(start_ + HostWatch::absence)) << "asking has not forgotten that";
}

TEST(UnwatchableHost, IsNeverNoticed) {
    HostWatch watch{"/nonexistent/port"};
    EXPECT_EQ(watch.descriptor(), -1);
    EXPECT_FALSE(watch.portWasLeft(HostWatch::Clock::now() + HostWatch::absence));
}

}  // namespace
}  // namespace velmorindal
