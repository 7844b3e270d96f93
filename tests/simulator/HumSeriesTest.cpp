#include "HumSeries.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace velmorindal {
namespace {

using namespace std::chrono_literals;

struct Minutes {
    std::vector<std::uint16_t> hums;
    std::vector<float> clarities;
};

/// Five minutes of humming, looked at every 10 ms.
Minutes listenTo(std::uint32_t seed) {
    HumSeries series{seed};
    Minutes heard;
    for (HumSeries::Time now{0}; now < 5min; now += 10ms) {
        if (const auto hum = series.advanceTo(now)) {
            heard.hums.push_back(*hum);
        }
        heard.clarities.push_back(series.clarity());
    }
    return heard;
}

TEST(HumSeries, TheSameSeedHumsTheSame) {
    EXPECT_EQ(listenTo(7).hums, listenTo(7).hums);
    EXPECT_EQ(listenTo(7).clarities, listenTo(7).clarities);
    EXPECT_NE(listenTo(7).hums, listenTo(8).hums);
}

TEST(HumSeries, HumsAreShortOrLongAndBothOccurOften) {
    const auto heard = listenTo(1).hums;
    const auto shorts = std::count_if(heard.begin(), heard.end(), [](auto ticks) { return ticks <= 20; });
    const auto longs = std::count_if(heard.begin(), heard.end(), [](auto ticks) { return ticks >= 40; });
    EXPECT_EQ(static_cast<std::size_t>(shorts + longs), heard.size());
    EXPECT_GT(shorts, 20);
    EXPECT_GT(longs, 20);
    EXPECT_GE(*std::min_element(heard.begin(), heard.end()), 5);
    EXPECT_LE(*std::max_element(heard.begin(), heard.end()), 65);
}

TEST(HumSeries, ClarityStaysBetweenNoiseAndOneAndTakesAllLevelsBetween) {
    const auto heard = listenTo(1).clarities;
    EXPECT_GT(*std::min_element(heard.begin(), heard.end()), 0.0F);
    EXPECT_LE(*std::max_element(heard.begin(), heard.end()), 1.0F);
    for (const float level : {0.1F, 0.3F, 0.5F, 0.7F}) {
        const auto near = [level](float clarity) { return clarity >= level && clarity < level + 0.1F; };
        EXPECT_GT(std::count_if(heard.begin(), heard.end(), near), 100) << level;
    }
}

TEST(HumSeries, ClarityRisesAndFallsWithoutJumps) {
    const auto heard = listenTo(3).clarities;
    for (std::size_t index = 1; index < heard.size(); ++index) {
        ASSERT_LT(std::abs(heard[index] - heard[index - 1]), 0.12F) << index;
    }
}

TEST(HumSeries, OnlyTheLastOfSeveralFinishedHumsIsReported) {
    HumSeries each{5};
    HumSeries afterwards{5};
    std::optional<std::uint16_t> last;
    for (HumSeries::Time now{0}; now <= 20s; now += 10ms) {
        const auto hum = each.advanceTo(now);
        last = hum ? hum : last;
    }
    ASSERT_TRUE(last);
    EXPECT_EQ(afterwards.advanceTo(20s), last);
    EXPECT_EQ(afterwards.advanceTo(20s), std::nullopt);
}

}  // namespace
}  // namespace velmorindal
