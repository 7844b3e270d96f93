#include "TwoDecimals.h"

#include <gtest/gtest.h>

#include <limits>

#include "OtherLocales.h"

namespace velmorindal {
namespace {

TEST(TwoDecimals, WritesTwoDecimalsAlways) {
    EXPECT_EQ(twoDecimals(0.5F), "0.50");
    EXPECT_EQ(twoDecimals(0.3F), "0.30");
    EXPECT_EQ(twoDecimals(0.0F), "0.00");
    EXPECT_EQ(twoDecimals(3.0F), "3.00");
    EXPECT_EQ(twoDecimals(-1.25F), "-1.25");
    EXPECT_EQ(twoDecimals(0.456F), "0.46");
}

TEST(TwoDecimals, WritesTheLargestNumberWhole) {
    EXPECT_EQ(twoDecimals(std::numeric_limits<float>::max()), "340282346638528859811704183484516925440.00");
}

TEST(TwoDecimals, IgnoresTheLocale) {
    inOtherLocales([](const char* locale) { EXPECT_EQ(twoDecimals(1234.5F), "1234.50") << locale; });
}

}  // namespace
}  // namespace velmorindal
