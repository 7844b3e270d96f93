#include "VCLastHumDuration.h"

#include "ProtocolTest.h"

namespace velmorindal {
namespace {

TEST(VCLastHumDuration, StartsValidAndZero) {
    const VCLastHumDuration last;
    EXPECT_TRUE(last._valid);
    EXPECT_EQ(last._duration, 0);
    EXPECT_FALSE(last._sourceSI);
}

TEST(VCLastHumDuration, EncodesBothBytesOfTheDurationAndTheSourceAsZeroOrOne) {
    VCLastHumDuration last;
    last._duration = 300;
    EXPECT_EQ(last.serialize(), (ByteBuffer{'c', 'b', 'l', 0x03, 0x2C, 0x01, 0x00}));
    last._sourceSI = true;
    EXPECT_EQ(last.serialize(), (ByteBuffer{'c', 'b', 'l', 0x03, 0x2C, 0x01, 0x01}));
}

TEST(VCLastHumDuration, IsNotSentWhileInvalid) {
    VCLastHumDuration last;
    last._valid = false;
    EXPECT_EQ(errorOf([&] { last.serialize(); }), VelmorindalError::InvalidMessageError);
}

TEST(VCLastHumDuration, DecodesTheLowByteOfTheDurationAlone) {
    VCLastHumDuration last;
    EXPECT_TRUE(last.deserialize(ByteBuffer{'r', 'b', 'l', 0x03, 0x2C, 0x01, 0x01}));
    EXPECT_TRUE(last._valid);
    EXPECT_EQ(last._duration, 44);
    EXPECT_TRUE(last._sourceSI);
}

TEST(VCLastHumDuration, DecodesAnythingButZeroAsTheSourceSI) {
    VCLastHumDuration last;
    last._sourceSI = true;
    EXPECT_TRUE(last.deserialize(ByteBuffer{'r', 'b', 'l', 0x03, 0x10, 0x00, 0x00}));
    EXPECT_EQ(last._duration, 16);
    EXPECT_FALSE(last._sourceSI);
    for (const std::uint8_t source : ByteBuffer{0x01, 0x02, 0x80, 0xFF}) {
        EXPECT_TRUE(last.deserialize(ByteBuffer{'r', 'b', 'l', 0x03, 0x10, 0x00, source}));
        EXPECT_TRUE(last._sourceSI) << source;
    }
}

TEST(VCLastHumDuration, AReplyOfWrongLengthIsNotValidAndKeepsTheFields) {
    VCLastHumDuration last;
    last._duration = 300;
    EXPECT_EQ(printedBy([&] {
                  EXPECT_FALSE(last.deserialize(ByteBuffer{'r', 'b', 'l', 0x02, 0x10, 0x00}));
                  EXPECT_FALSE(last.deserialize(ByteBuffer{'r', 'b', 'l', 0x04, 0x10, 0x00, 0x01, 0x00}));
              }),
              "");
    EXPECT_FALSE(last._valid);
    EXPECT_EQ(last._duration, 300);
    EXPECT_FALSE(last._sourceSI);
}

TEST(VCLastHumDuration, ReadsBackWhatItWroteUpTo255Ticks) {
    for (unsigned value = 0; value <= 0xFF; ++value) {
        VCLastHumDuration last;
        last._duration = static_cast<std::uint16_t>(value);
        last._sourceSI = value % 3 == 0;
        const VCLastHumDuration decoded = throughTheWire(last);
        EXPECT_EQ(decoded._duration, last._duration);
        EXPECT_EQ(decoded._sourceSI, last._sourceSI);
    }
}

}  // namespace
}  // namespace velmorindal
