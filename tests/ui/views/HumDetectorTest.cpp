#include "ui/views/HumDetector.h"

#include <gmock/gmock.h>

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

TEST(HumDetector, AHumIsToldOnceByItsHighestClarityWhenItHasFallenToHalfOfThat) {
    EXPECT_THAT(humsIn({0.05, 0.4, 0.72, 0.6, 0.37}), testing::IsEmpty());
    EXPECT_THAT(humsIn({0.05, 0.4, 0.72, 0.6, 0.36, 0.05, 0.05}), testing::ElementsAre(0.72));
}

TEST(HumDetector, NeitherNoiseNorAFadingTailIsAHum) {
    EXPECT_THAT(humsIn({0.05, 0.08, 0.02, 0.09, 0.0}), testing::IsEmpty());
    EXPECT_THAT(humsIn({0.8, 0.39, 0.3, 0.2, 0.1, 0.05, 0.0}), testing::ElementsAre(0.8));
}

TEST(HumDetector, EachOfSeveralHumsIsTold) {
    EXPECT_THAT(humsIn({0.5, 0.1, 0.9, 0.2, 0.31, 0.1}), testing::ElementsAre(0.5, 0.9, 0.31));
}

}  // namespace
}  // namespace velmorindal
