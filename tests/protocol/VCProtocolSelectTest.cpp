#include "VCProtocolSelect.h"

#include "ProtocolTest.h"

namespace velmorindal {
namespace {

using enum VCProtocolSelect::CommProtocol;

TEST(VCProtocolSelect, StartsValidWithGazell) {
    const VCProtocolSelect select;
    EXPECT_TRUE(select._valid);
    EXPECT_EQ(select.proto, Gazell);
}

TEST(VCProtocolSelect, EncodesTheProtocolAsOneByte) {
    VCProtocolSelect select;
    EXPECT_EQ(select.serialize(), (ByteBuffer{'c', 'b', 'x', 0x01, 0x00}));
    select.proto = Bluetooth;
    EXPECT_EQ(select.serialize(), (ByteBuffer{'c', 'b', 'x', 0x01, 0x01}));
}

TEST(VCProtocolSelect, IsNotSentWhileInvalid) {
    VCProtocolSelect select;
    select._valid = false;
    EXPECT_EQ(errorOf([&] { select.serialize(); }), VelmorindalError::InvalidMessageError);
}

TEST(VCProtocolSelect, DecodesOddBytesAsBluetoothAndEvenOnesAsGazell) {
    VCProtocolSelect select;
    EXPECT_TRUE(select.deserialize(ByteBuffer{'r', 'b', 'x', 0x01, 0xFF}));
    EXPECT_EQ(select.proto, Bluetooth);
    EXPECT_TRUE(select.deserialize(ByteBuffer{'r', 'b', 'x', 0x01, 0x02}));
    EXPECT_EQ(select.proto, Gazell);
    for (unsigned value = 0; value <= 0xFF; ++value) {
        EXPECT_TRUE(select.deserialize(ByteBuffer{'r', 'b', 'x', 0x01, static_cast<std::uint8_t>(value)}));
        EXPECT_EQ(select.proto, value % 2 == 0 ? Gazell : Bluetooth) << value;
    }
}

TEST(VCProtocolSelect, AReplyOfWrongLengthIsNotValidAndPrintsNothing) {
    VCProtocolSelect select;
    select.proto = Bluetooth;
    EXPECT_EQ(printedBy([&] {
                  EXPECT_FALSE(select.deserialize(ByteBuffer{'r', 'b', 'x', 0x00}));
                  EXPECT_FALSE(select.deserialize(ByteBuffer{'r', 'b', 'x', 0x02, 0x00, 0x00}));
              }),
              "");
    EXPECT_FALSE(select._valid);
    EXPECT_EQ(select.proto, Bluetooth);
}

TEST(VCProtocolSelect, ReadsBackWhatItWrote) {
    for (const auto proto : {Gazell, Bluetooth}) {
        VCProtocolSelect select;
        select.proto = proto;
        EXPECT_EQ(throughTheWire(select).proto, proto);
    }
}

TEST(CommProtocol, HasTwoRawValuesAndNoOther) {
    EXPECT_EQ(VCProtocolSelect::commProtocolFromRawValue(0), Gazell);
    EXPECT_EQ(VCProtocolSelect::commProtocolFromRawValue(1), Bluetooth);
    EXPECT_EQ(VCProtocolSelect::commProtocolFromRawValue(2), std::nullopt);
    EXPECT_EQ(VCProtocolSelect::commProtocolFromRawValue(0xFF), std::nullopt);
}

}  // namespace
}  // namespace velmorindal
