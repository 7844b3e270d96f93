#include "VCHumThresholds.h"

#include <array>
#include <limits>
#include <random>

#include "ProtocolTest.h"

namespace velmorindal {
namespace {

TEST(VCHumThresholds, StartsValidAndZero) {
    const VCHumThresholds thresholds;
    EXPECT_TRUE(thresholds._valid);
    EXPECT_EQ(thresholds.serialize(), (ByteBuffer{'c', 'b', 'h', 0x08, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(VCHumThresholds, EncodesTheBitPatternsWithTheLowBytesFirst) {
    VCHumThresholds thresholds;
    thresholds.apThreshold = 0.37F;
    thresholds.siThreshold = -1.5F;
    EXPECT_EQ(thresholds.serialize(),
              (ByteBuffer{'c', 'b', 'h', 0x08, 0xA4, 0x70, 0xBD, 0x3E, 0x00, 0x00, 0xC0, 0xBF}));
}

TEST(VCHumThresholds, IsSentEvenWhileInvalid) {
    VCHumThresholds thresholds;
    thresholds._valid = false;
    thresholds.apThreshold = 1.0F;
    EXPECT_EQ(thresholds.serialize(),
              (ByteBuffer{'c', 'b', 'h', 0x08, 0x00, 0x00, 0x80, 0x3F, 0x00, 0x00, 0x00, 0x00}));
}

TEST(VCHumThresholds, DecodesTheBitPatterns) {
    VCHumThresholds thresholds;
    EXPECT_TRUE(thresholds.deserialize(
        ByteBuffer{'r', 'b', 'h', 0x08, 0x00, 0x00, 0x00, 0x3F, 0x01, 0x00, 0xA0, 0x7F}));
    EXPECT_TRUE(thresholds._valid);
    EXPECT_EQ(thresholds.apThreshold, 0.5F);
    EXPECT_EQ(bitsOf(thresholds.siThreshold), 0x7FA00001U);  // a signalling NaN, untouched
}

TEST(VCHumThresholds, AReplyOfWrongLengthIsNotValidAndKeepsTheFields) {
    VCHumThresholds thresholds;
    thresholds.apThreshold = 0.25F;
    EXPECT_EQ(
        printedBy([&] {
            EXPECT_FALSE(thresholds.deserialize(ByteBuffer{'r', 'b', 'h', 0x07, 1, 2, 3, 4, 5, 6, 7}));
            EXPECT_FALSE(thresholds.deserialize(ByteBuffer{'r', 'b', 'h', 0x09, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
        }),
        "");
    EXPECT_FALSE(thresholds._valid);
    EXPECT_EQ(thresholds.apThreshold, 0.25F);
    EXPECT_EQ(thresholds.siThreshold, 0.0F);
}

TEST(VCHumThresholds, RefusesAnAutoTuneReportOfTheSameLayout) {
    VCHumThresholds thresholds;
    EXPECT_EQ(
        printedBy([&] {
            EXPECT_FALSE(thresholds.deserialize(ByteBuffer{'r', 'b', 't', 0x08, 1, 2, 3, 4, 5, 6, 7, 8}));
        }),
        "Expected message type  104 ). Got  116\n");
    EXPECT_FALSE(thresholds._valid);
}

void expectToSurviveTheWire(float first, float second) {
    VCHumThresholds thresholds;
    thresholds.apThreshold = first;
    thresholds.siThreshold = second;
    const VCHumThresholds decoded = throughTheWire(thresholds);
    EXPECT_EQ(bitsOf(decoded.apThreshold), bitsOf(first));
    EXPECT_EQ(bitsOf(decoded.siThreshold), bitsOf(second));
}

TEST(VCHumThresholds, ReadsBackEveryBitThatItWrote) {
    using Limits = std::numeric_limits<float>;
    for (const float value :
         std::array{0.0F, -0.0F, Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN(),
                    Limits::signaling_NaN(), Limits::denorm_min(), Limits::max()}) {
        expectToSurviveTheWire(value, -value);
    }
    std::mt19937 random{20240229};  // NOLINT(*-msc51-cpp): the same numbers in every run
    for (int round = 0; round < 10000; ++round) {
        const auto first = static_cast<std::uint32_t>(random());
        const auto second = static_cast<std::uint32_t>(random());
        expectToSurviveTheWire(std::bit_cast<float>(first), std::bit_cast<float>(second));
    }
}

}  // namespace
}  // namespace velmorindal
