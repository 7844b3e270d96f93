#include "VCHumDuration.h"

#include "ProtocolTest.h"

namespace velmorindal {
namespace {

using enum VCHumDuration::DetectMode;

TEST(VCHumDuration, StartsValidAndZero) {
    const VCHumDuration duration;
    EXPECT_TRUE(duration._valid);
    EXPECT_EQ(duration.serialize(), (ByteBuffer{'c', 'b', 'd', 0x0B, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(VCHumDuration, EncodesItsFieldsInOrderWithTheLowBytesFirst) {
    VCHumDuration duration;
    duration.detect_mode = DetectModeShortAndLong;
    duration.min_short = 0x0102;
    duration.max_short = 0x0304;
    duration.min_long = 0x0506;
    duration.max_long = 0xFFFE;
    duration.hold_on = 4;
    duration.hold_off = 9;
    EXPECT_EQ(duration.serialize(),
              (ByteBuffer{'c', 'b', 'd', 0x0B,  //
                          0x03, 0x02, 0x01, 0x04, 0x03, 0x06, 0x05, 0xFE, 0xFF, 0x04, 0x09}));
}

TEST(VCHumDuration, IsNotSentWhileInvalid) {
    VCHumDuration duration;
    duration._valid = false;
    EXPECT_EQ(errorOf([&] { duration.serialize(); }), VelmorindalError::InvalidMessageError);
}

TEST(VCHumDuration, DecodesTheLowByteOfEachDurationAndIgnoresTheHighOne) {
    VCHumDuration duration;
    EXPECT_TRUE(
        duration.deserialize(ByteBuffer{'r', 'b', 'd', 0x0B,  //
                                        0x01, 0x02, 0xAA, 0x03, 0xBB, 0x04, 0xCC, 0xFF, 0xDD, 0x05, 0x06}));
    EXPECT_TRUE(duration._valid);
    EXPECT_EQ(duration.detect_mode, DetectModeShortOnly);
    EXPECT_EQ(duration.min_short, 2);
    EXPECT_EQ(duration.max_short, 3);
    EXPECT_EQ(duration.min_long, 4);
    EXPECT_EQ(duration.max_long, 255);
    EXPECT_EQ(duration.hold_on, 5);
    EXPECT_EQ(duration.hold_off, 6);
}

TEST(VCHumDuration, ADurationOf300TicksGoesOutWholeAndComesBackAs44) {
    VCHumDuration duration;
    duration.min_short = 300;
    const ByteBuffer frame = duration.serialize();
    EXPECT_EQ(frame[4 + 1], 0x2C);
    EXPECT_EQ(frame[4 + 2], 0x01);
    EXPECT_EQ(throughTheWire(duration).min_short, 44);
}

TEST(VCHumDuration, DecodesTheTwoLowestBitsOfTheDetectMode) {
    VCHumDuration duration;
    EXPECT_TRUE(duration.deserialize(ByteBuffer{'r', 'b', 'd', 0x0B, 0x07, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(duration.detect_mode, DetectModeShortAndLong);
    EXPECT_TRUE(duration.deserialize(ByteBuffer{'r', 'b', 'd', 0x0B, 0xFC, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(duration.detect_mode, DetectModeContinuous);
    EXPECT_TRUE(duration.deserialize(ByteBuffer{'r', 'b', 'd', 0x0B, 0x82, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(duration.detect_mode, DetectModeLongOnly);
}

TEST(VCHumDuration, AReplyOfWrongLengthIsNotValidAndKeepsTheFields) {
    VCHumDuration duration;
    duration.max_short = 300;
    EXPECT_EQ(printedBy([&] {
                  EXPECT_FALSE(
                      duration.deserialize(ByteBuffer{'r', 'b', 'd', 0x0A, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
                  EXPECT_FALSE(duration.deserialize(
                      ByteBuffer{'r', 'b', 'd', 0x0C, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
              }),
              "");
    EXPECT_FALSE(duration._valid);
    EXPECT_EQ(duration.detect_mode, DetectModeContinuous);
    EXPECT_EQ(duration.max_short, 300);
    EXPECT_EQ(duration.hold_on, 0);
}

TEST(VCHumDuration, ReadsBackWhatItWroteUpTo255Ticks) {
    for (unsigned value = 0; value <= 0xFF; ++value) {
        VCHumDuration duration;
        duration.detect_mode = VCHumDuration::detectModeFromRawValue(value % 4).value();
        duration.min_short = static_cast<std::uint16_t>(value);
        duration.max_short = static_cast<std::uint16_t>(value ^ 0x55U);
        duration.min_long = static_cast<std::uint16_t>(value ^ 0xAAU);
        duration.max_long = static_cast<std::uint16_t>(value ^ 0xFFU);
        duration.hold_on = static_cast<std::uint8_t>(value ^ 0x0FU);
        duration.hold_off = static_cast<std::uint8_t>(value ^ 0xF0U);
        const VCHumDuration decoded = throughTheWire(duration);
        EXPECT_EQ(decoded.detect_mode, duration.detect_mode);
        EXPECT_EQ(decoded.min_short, duration.min_short);
        EXPECT_EQ(decoded.max_short, duration.max_short);
        EXPECT_EQ(decoded.min_long, duration.min_long);
        EXPECT_EQ(decoded.max_long, duration.max_long);
        EXPECT_EQ(decoded.hold_on, duration.hold_on);
        EXPECT_EQ(decoded.hold_off, duration.hold_off);
    }
}

TEST(DetectMode, HasFourRawValuesAndNoOther) {
    EXPECT_EQ(VCHumDuration::detectModeFromRawValue(0), DetectModeContinuous);
    EXPECT_EQ(VCHumDuration::detectModeFromRawValue(1), DetectModeShortOnly);
    EXPECT_EQ(VCHumDuration::detectModeFromRawValue(2), DetectModeLongOnly);
    EXPECT_EQ(VCHumDuration::detectModeFromRawValue(3), DetectModeShortAndLong);
    EXPECT_EQ(VCHumDuration::detectModeFromRawValue(4), std::nullopt);
    EXPECT_EQ(VCHumDuration::detectModeFromRawValue(0xFF), std::nullopt);
}

}  // namespace
}  // namespace velmorindal
