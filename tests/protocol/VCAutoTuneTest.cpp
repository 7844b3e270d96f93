#include "VCAutoTune.h"

#include "ProtocolTest.h"

namespace velmorindal {
namespace {

TEST(VCAutoTune, StartsValidAndZero) {
    const VCAutoTune tune;
    EXPECT_TRUE(tune._valid);
    EXPECT_EQ(tune.channel, 0);
    EXPECT_EQ(bitsOf(tune._minThreshold), 0U);
    EXPECT_EQ(bitsOf(tune._maxThreshold), 0U);
}

TEST(VCAutoTune, EncodesTheChannelAloneWhateverTheThresholds) {
    VCAutoTune tune;
    tune.channel = 2;
    tune._minThreshold = 0.25F;
    tune._maxThreshold = 0.75F;
    EXPECT_EQ(tune.serialize(), (ByteBuffer{'c', 'b', 't', 0x01, 0x02}));
    tune.channel = 0;
    EXPECT_EQ(tune.serialize(), (ByteBuffer{'c', 'b', 't', 0x01, 0x00}));
}

TEST(VCAutoTune, IsNotSentWhileInvalid) {
    VCAutoTune tune;
    tune._valid = false;
    EXPECT_EQ(errorOf([&] { tune.serialize(); }), VelmorindalError::InvalidMessageError);
}

TEST(VCAutoTune, DecodesTheRange) {
    VCAutoTune tune;
    EXPECT_TRUE(
        tune.deserialize(ByteBuffer{'r', 'b', 't', 0x08, 0x00, 0x00, 0x80, 0x3E, 0x00, 0x00, 0x40, 0x3F}));
    EXPECT_TRUE(tune._valid);
    EXPECT_EQ(tune._minThreshold, 0.25F);
    EXPECT_EQ(tune._maxThreshold, 0.75F);
}

TEST(VCAutoTune, DecodesEveryBitOfTheRange) {
    VCAutoTune tune;
    EXPECT_TRUE(
        tune.deserialize(ByteBuffer{'r', 'b', 't', 0x08, 0x01, 0x00, 0xA0, 0x7F, 0x01, 0x02, 0x03, 0x84}));
    EXPECT_EQ(bitsOf(tune._minThreshold), 0x7FA00001U);
    EXPECT_EQ(bitsOf(tune._maxThreshold), 0x84030201U);
}

TEST(VCAutoTune, KeepsItsChannelWhenAReportArrives) {
    VCAutoTune tune;
    tune.channel = 2;
    EXPECT_TRUE(tune.deserialize(ByteBuffer{'r', 'b', 't', 0x08, 1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(tune.channel, 2);
}

TEST(VCAutoTune, AReportOfWrongLengthIsNotValidAndKeepsTheFields) {
    VCAutoTune tune;
    tune.channel = 2;
    tune._maxThreshold = 0.75F;
    EXPECT_EQ(printedBy([&] {
                  EXPECT_FALSE(tune.deserialize(ByteBuffer{'r', 'b', 't', 0x07, 1, 2, 3, 4, 5, 6, 7}));
                  EXPECT_FALSE(tune.deserialize(ByteBuffer{'r', 'b', 't', 0x01, 0x02}));
              }),
              "");
    EXPECT_FALSE(tune._valid);
    EXPECT_EQ(tune.channel, 2);
    EXPECT_EQ(tune._minThreshold, 0.0F);
    EXPECT_EQ(tune._maxThreshold, 0.75F);
}

TEST(VCAutoTune, RefusesThresholdsOfTheSameLayout) {
    VCAutoTune tune;
    EXPECT_EQ(printedBy([&] {
                  EXPECT_FALSE(tune.deserialize(ByteBuffer{'r', 'b', 'h', 0x08, 1, 2, 3, 4, 5, 6, 7, 8}));
              }),
              "Expected message type  116 ). Got  104\n");
    EXPECT_FALSE(tune._valid);
}

}  // namespace
}  // namespace velmorindal
