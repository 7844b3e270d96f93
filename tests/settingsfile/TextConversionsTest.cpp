#include "TextConversions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "OtherToolkitLocales.h"

namespace velmorindal {
namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();

TEST(BooleanValue, IsTrueForTextsThatBeginLikeYesTrueOrANumberOtherThanZero) {
    for (const std::string_view text : {"true", "True", "t", "T", "tomorrow", "yes", "YES", "y", "Y", "yak",
                                        "1", "2", "9", "10", "1.0", "5 apples"}) {
        EXPECT_TRUE(booleanValue(text)) << text;
    }
}

TEST(BooleanValue, IsFalseForEverythingElse) {
    for (const std::string_view text : {"", "false", "no", "n", "f", "on", "0", "000", "0.5", ".1", "x1",
                                        "\"1\"", "-", "+", "-0", "enabled", "\u00FF", "\u0661", "\xE2\x80"}) {
        EXPECT_FALSE(booleanValue(text)) << text;
    }
    EXPECT_FALSE(booleanValue(std::string{'\0', '1'}));
}

TEST(BooleanValue, PassesOverWhiteSpaceThenOneSignThenZeros) {
    for (const std::string_view text : {"  true", "\t\n\v\f\r 1", "+1", "-1", " -Y", "0001", "-0009",
                                        "00true", "+0t", "\u00A01", "\u3000\u2003yes", "\u00851"}) {
        EXPECT_TRUE(booleanValue(text)) << text;
    }
    for (const std::string_view text :
         {"--1", "+-1", "- 1", "0 1", "0-1", "0+true", "   ", " 0 ", "\u200B1"}) {
        EXPECT_FALSE(booleanValue(text)) << text;
    }
}

struct FloatCase {
    std::string_view text;
    float value;
};

TEST(FloatValue, IsTheLongestDecimalNumberThatTheTextBeginsWith) {
    for (const auto& [text, value] :
         {FloatCase{"0.50", 0.5F}, {"1.5", 1.5F},    {"0.46", 0.46F}, {"12", 12.0F},
          {"007.25", 7.25F},       {".5", 0.5F},     {"5.", 5.0F},    {"5.e1", 50.0F},
          {"1.5 seconds", 1.5F},   {"1.5.2", 1.5F},  {"1,5", 1.0F},   {"1 000", 1.0F},
          {"1'000", 1.0F},         {"1_000", 1.0F},  {"2e2", 200.0F}, {"2E+2", 200.0F},
          {"25e-1", 2.5F},         {"2e", 2.0F},     {"2e+", 2.0F},   {"2e-x", 2.0F},
          {"2ex3", 2.0F},          {"2e1.9", 20.0F}, {"2d3", 2.0F},   {"1f", 1.0F}}) {
        EXPECT_EQ(floatValue(text), value) << text;
    }
}

TEST(FloatValue, PassesOverWhiteSpaceAndTakesOneSign) {
    for (const auto& [text, value] : {FloatCase{" \t\n\v\f\r1.5", 1.5F},
                                      {"\u00A0\u202F\u30001.5", 1.5F},
                                      {"+1.5", 1.5F},
                                      {"-1.5", -1.5F},
                                      {" -.5", -0.5F},
                                      {"- 1", 0.0F},
                                      {"+-1", 0.0F},
                                      {"--1", 0.0F}}) {
        EXPECT_EQ(floatValue(text), value) << text;
    }
}

TEST(FloatValue, IsZeroForATextThatDoesNotBeginWithANumber) {
    for (const std::string_view text :
         {"", " ", "abc", "x1", ".", "-.", "+", "-", "e5", ".e5", "\u0661", "$1"}) {
        EXPECT_EQ(floatValue(text), 0.0F) << text;
        EXPECT_FALSE(std::signbit(floatValue(text))) << text;
    }
    EXPECT_EQ(floatValue(std::string{'\0', '1'}), 0.0F);
}

TEST(FloatValue, KnowsNoWordsAndNoHexadecimal) {
    for (const std::string_view text :
         {"inf", "-inf", "INFINITY", "nan", "NaN", "nan(1)", "0x10", "0X1p3", "-0x1"}) {
        EXPECT_EQ(floatValue(text), 0.0F) << text;
    }
}

TEST(FloatValue, IsTheNearestFloatHoweverManyDigitsThereAre) {
    EXPECT_EQ(floatValue("0.1"), 0.1F);
    EXPECT_EQ(floatValue("16777217"), 16777216.0F);
    // Just above the middle between two floats; by way of a double it would be rounded twice, to the lower
    // one.
    EXPECT_EQ(floatValue("1.00000005960464477540"), std::nextafter(1.0F, 2.0F));
    EXPECT_EQ(floatValue("0." + std::string(5000, '3')), 1.0F / 3.0F);
    EXPECT_EQ(floatValue(std::string(5000, '0') + "1.5"), 1.5F);
    EXPECT_EQ(floatValue("1.4e-45"), std::numeric_limits<float>::denorm_min());
    EXPECT_EQ(floatValue("3.4028235e38"), std::numeric_limits<float>::max());
}

TEST(FloatValue, IsInfiniteForANumberTooLargeForAFloat) {
    EXPECT_EQ(floatValue("1e39"), infinity);
    EXPECT_EQ(floatValue("-1e39"), -infinity);
    EXPECT_EQ(floatValue("3.4028236e38"), infinity);
    EXPECT_EQ(floatValue("1e99999999999999999999"), infinity);
    EXPECT_EQ(floatValue("1" + std::string(400, '0') + "e-300"), infinity);
    EXPECT_EQ(floatValue("00.00001e50"), infinity);
}

TEST(FloatValue, IsZeroForANumberTooSmallForAFloat) {
    EXPECT_EQ(floatValue("1e-60"), 0.0F);
    EXPECT_EQ(floatValue("1e-99999999999999999999"), 0.0F);
    EXPECT_EQ(floatValue("0." + std::string(400, '0') + "1e300"), 0.0F);
    EXPECT_EQ(floatValue("1000e-100"), 0.0F);
    EXPECT_EQ(floatValue("0e99999999999999999999"), 0.0F);
    EXPECT_EQ(floatValue("0.000e400"), 0.0F);
}

TEST(FloatValue, IgnoresTheLocale) {
    inOtherToolkitLocales([](const char* locale) {
        EXPECT_EQ(floatValue("1.50"), 1.5F) << locale;
        EXPECT_EQ(floatValue("1,50"), 1.0F) << locale;
    });
}

}  // namespace
}  // namespace velmorindal
