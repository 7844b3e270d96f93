#include "HumDetector.h"

#include <gmock/gmock.h>

#include <limits>
#include <vector>

namespace velmorindal {
namespace {

std::vector<double> humsIn(const std::vector<double>& readings) {
    HumDetector detector;
    std::vector<double> hums;
    for (const double reading : readings) {
        if (const auto hum = detector.next(reading)) {
            hums.push_back(*hum);
        }
    }
    return hums;
}

TEST(HumDetector, AHumIsReportedOnceByItsHighestClarityWhenItHasFallenHalfOfItsRise) {
    EXPECT_THAT(humsIn({0.05, 0.4, 0.72, 0.6, 0.39}), testing::IsEmpty());
    EXPECT_THAT(humsIn({0.05, 0.4, 0.72, 0.6, 0.38, 0.05, 0.05}), testing::ElementsAre(0.72));
    EXPECT_THAT(humsIn({0.0, 0.5, 0.25}), testing::ElementsAre(0.5));
}

TEST(HumDetector, NeitherNoiseNorAFadingTailIsAHum) {
    EXPECT_THAT(humsIn({0.05, 0.08, 0.02, 0.09, 0.0}), testing::IsEmpty());
    EXPECT_THAT(humsIn({0.0, 0.099, 0.0, 0.1, 0.0}), testing::ElementsAre(0.1));
    EXPECT_THAT(humsIn({0.0, 0.8, 0.39, 0.3, 0.2, 0.1, 0.05, 0.0}), testing::ElementsAre(0.8));
}

TEST(HumDetector, EachOfSeveralHumsIsReported) {
    EXPECT_THAT(humsIn({0.1, 0.5, 0.1, 0.9, 0.2, 0.31, 0.1}), testing::ElementsAre(0.5, 0.9, 0.31));
}

TEST(HumDetector, HumsAreReportedOverNoiseAboveHalfOfTheirClarity) {
    EXPECT_THAT(humsIn({0.3, 0.55, 0.31, 0.3, 0.55, 0.3}), testing::ElementsAre(0.55, 0.55));
}

TEST(HumDetector, AReadingThatIsNoNumberIsIgnored) {
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    constexpr double endless = std::numeric_limits<double>::infinity();
    EXPECT_THAT(humsIn({none, 0.1, -endless, 0.5, none, endless, 0.1}), testing::ElementsAre(0.5));
}

TEST(HumDetector, AReadingBelowZeroCountsAsZero) {
    EXPECT_THAT(humsIn({0.1, -3.0, 0.2, 0.8, 0.3}), testing::ElementsAre(0.8));
}

TEST(HumDetector, TheFirstReadingIsNoHum) {
    EXPECT_THAT(humsIn({0.3, 0.3, 0.3, 0.1}), testing::IsEmpty());
}

}  // namespace
}  // namespace velmorindal
