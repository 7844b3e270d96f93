#include "DeviceTicks.h"

#include <gtest/gtest.h>

namespace velmorindal {
namespace {

TEST(DeviceTicks, AreWholeAndFitSixteenBits) {
    EXPECT_EQ(wholeTicks(2621.42F), 65535);
    EXPECT_EQ(wholeTicks(2621.44F), std::nullopt);
    EXPECT_EQ(wholeTicks(0.079F), 1);
    EXPECT_EQ(wholeTicks(-0.02F), 0);
    EXPECT_EQ(wholeTicks(-0.04F), std::nullopt);
}

TEST(DeviceTicks, OfAHumAreMultipliedAsTheyAreShown) {
    EXPECT_EQ(humSeconds(25), 1.0);
    EXPECT_EQ(humSeconds(35), 1.4000000000000001);
    EXPECT_EQ(humSeconds(41), 1.6400000000000001);
}

}  // namespace
}  // namespace velmorindal
