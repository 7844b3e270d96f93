#include "ProgressBar.h"

#include <gtest/gtest.h>

namespace velmorindal {
namespace {

ProgressBar bar(double value, double maxValue) {
    return {.value = value,
            .maxValue = maxValue,
            .backgroundEnabled = true,
            .backgroundColor = colors::veryLightGrey,
            .foregroundColor = colors::blue};
}

TEST(ProgressBar, FillsTheShareOfTheWidthThatItsValueIsOfTheMaximum) {
    EXPECT_DOUBLE_EQ(bar(0.0, 1.0).fillWidth(200.0), 0.0);
    EXPECT_DOUBLE_EQ(bar(0.25, 1.0).fillWidth(200.0), 50.0);
    EXPECT_DOUBLE_EQ(bar(2.0, 5.0).fillWidth(200.0), 80.0);
    EXPECT_DOUBLE_EQ(bar(3.0, 3.0).fillWidth(200.0), 200.0);
}

TEST(ProgressBar, AReadingAboveTheMaximumFillsTheBarAndNoMore) {
    EXPECT_DOUBLE_EQ(bar(3.01, 3.0).fillWidth(200.0), 200.0);
    EXPECT_DOUBLE_EQ(bar(1000.0, 3.0).fillWidth(200.0), 200.0);
}

TEST(ProgressBar, ANegativeValueIsNotClampedToZero) {
    EXPECT_DOUBLE_EQ(bar(-0.5, 1.0).fillWidth(200.0), -100.0);
}

TEST(ProgressBar, TheVeryLightGreyOfTheTracksIs96PercentOfEachColour) {
    EXPECT_EQ(colors::veryLightGrey, (Color{.red = 0.96, .green = 0.96, .blue = 0.96}));
}

}  // namespace
}  // namespace velmorindal
