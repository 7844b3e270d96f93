#include "VCKeyboardConfig.h"

#include "ProtocolTest.h"

namespace velmorindal {
namespace {

VCKeyboardConfig eightDifferentBytes() {
    VCKeyboardConfig config;
    config.shortKey0Modifier = 0x11;
    config.shortKey0 = 0x22;
    config.shortKey1Modifier = 0x33;
    config.shortKey1 = 0x44;
    config.longKey0Modifier = 0x55;
    config.longKey0 = 0x66;
    config.longKey1Modifier = 0x77;
    config.longKey1 = 0x88;
    return config;
}

TEST(VCKeyboardConfig, StartsValidAndZero) {
    const VCKeyboardConfig config;
    EXPECT_TRUE(config._valid);
    EXPECT_EQ(config.serialize(), (ByteBuffer{'c', 'b', 'k', 0x08, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(VCKeyboardConfig, EncodesItsFieldsInOrder) {
    EXPECT_EQ(eightDifferentBytes().serialize(),
              (ByteBuffer{'c', 'b', 'k', 0x08, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88}));
}

TEST(VCKeyboardConfig, IsSentEvenWhileInvalid) {
    VCKeyboardConfig config = eightDifferentBytes();
    config._valid = false;
    EXPECT_EQ(config.serialize(),
              (ByteBuffer{'c', 'b', 'k', 0x08, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88}));
}

TEST(VCKeyboardConfig, DecodesItsFieldsInOrder) {
    VCKeyboardConfig config;
    EXPECT_TRUE(config.deserialize(ByteBuffer{'r', 'b', 'k', 0x08, 1, 2, 3, 4, 5, 6, 7, 0xFF}));
    EXPECT_TRUE(config._valid);
    EXPECT_EQ(config.shortKey0Modifier, 1);
    EXPECT_EQ(config.shortKey0, 2);
    EXPECT_EQ(config.shortKey1Modifier, 3);
    EXPECT_EQ(config.shortKey1, 4);
    EXPECT_EQ(config.longKey0Modifier, 5);
    EXPECT_EQ(config.longKey0, 6);
    EXPECT_EQ(config.longKey1Modifier, 7);
    EXPECT_EQ(config.longKey1, 0xFF);
}

TEST(VCKeyboardConfig, AReplyOfWrongLengthIsNotValidAndKeepsTheFields) {
    VCKeyboardConfig config = eightDifferentBytes();
    EXPECT_EQ(
        printedBy([&] {
            EXPECT_FALSE(config.deserialize(ByteBuffer{'r', 'b', 'k', 0x07, 1, 2, 3, 4, 5, 6, 7}));
            EXPECT_FALSE(config.deserialize(ByteBuffer{'r', 'b', 'k', 0x09, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
        }),
        "");
    EXPECT_FALSE(config._valid);
    EXPECT_EQ(config.serialize(), eightDifferentBytes().serialize());
}

TEST(VCKeyboardConfig, ReadsBackWhatItWrote) {
    for (unsigned value = 0; value <= 0xFF; ++value) {
        VCKeyboardConfig config = eightDifferentBytes();
        config.shortKey0 = static_cast<std::uint8_t>(value);
        config.longKey1 = static_cast<std::uint8_t>(value ^ 0xFFU);
        EXPECT_EQ(throughTheWire(config).serialize(), config.serialize());
    }
}

}  // namespace
}  // namespace velmorindal
