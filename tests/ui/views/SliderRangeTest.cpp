#include "SliderRange.h"

#include <gtest/gtest.h>

#include <limits>

namespace velmorindal {
namespace {

constexpr SliderRange hundredths{.minimum = 0.0, .maximum = 1.0, .step = 0.01};
constexpr SliderRange twentieths{.minimum = 0.1, .maximum = 3.0, .step = 0.05};

TEST(SliderRange, CountsBothEnds) {
    EXPECT_EQ(hundredths.positionCount(), 101);
    EXPECT_EQ(twentieths.positionCount(), 59);
}

TEST(SliderRange, EveryPositionIsTheDecimalNumberItStandsFor) {
    for (int position = 0; position <= 100; ++position) {
        EXPECT_EQ(hundredths.valueAt(position), static_cast<float>(position / 100.0)) << position;
    }
    for (int position = 0; position <= 58; ++position) {
        EXPECT_EQ(twentieths.valueAt(position), static_cast<float>((10 + 5 * position) / 100.0)) << position;
    }
}

TEST(SliderRange, EveryValueIsFoundAtItsOwnPosition) {
    for (const SliderRange& range : {hundredths, twentieths}) {
        for (int position = 0; position < range.positionCount(); ++position) {
            EXPECT_EQ(range.nearestPosition(range.valueAt(position)), position);
        }
    }
}

TEST(SliderRange, AValueBetweenTwoStepsIsShownAtTheNearerOne) {
    EXPECT_EQ(hundredths.nearestPosition(0.456F), 46);
    EXPECT_EQ(hundredths.nearestPosition(0.454F), 45);
    EXPECT_EQ(twentieths.nearestPosition(1.52F), 28);
    EXPECT_EQ(twentieths.nearestPosition(1.53F), 29);
}

TEST(SliderRange, AValueOutsideTheRangeIsShownAtItsEnd) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    EXPECT_EQ(twentieths.nearestPosition(0.0F), 0);
    EXPECT_EQ(twentieths.nearestPosition(-infinity), 0);
    EXPECT_EQ(twentieths.nearestPosition(3.01F), 58);
    EXPECT_EQ(twentieths.nearestPosition(1e30F), 58);
    EXPECT_EQ(twentieths.nearestPosition(infinity), 58);
    EXPECT_EQ(twentieths.nearestPosition(std::numeric_limits<float>::quiet_NaN()), 0);
}

TEST(SliderRange, NoPositionLeavesTheRange) {
    EXPECT_EQ(hundredths.valueAt(-1), 0.0F);
    EXPECT_EQ(hundredths.valueAt(101), 1.0F);
    EXPECT_EQ(twentieths.valueAt(-100), 0.1F);
    EXPECT_EQ(twentieths.valueAt(1000), 3.0F);
}

}  // namespace
}  // namespace velmorindal
