#include "VCOutputPath.h"

#include "ProtocolTest.h"

namespace velmorindal {
namespace {

using enum VCOutputPath::OutputPath;

TEST(VCOutputPath, StartsValidWithUsb) {
    const VCOutputPath output;
    EXPECT_TRUE(output._valid);
    EXPECT_EQ(output.path, USB);
}

TEST(VCOutputPath, EncodesThePathAsOneByte) {
    VCOutputPath output;
    EXPECT_EQ(output.serialize(), (ByteBuffer{'c', 'b', 'p', 0x01, 0x00}));
    output.path = Relay;
    EXPECT_EQ(output.serialize(), (ByteBuffer{'c', 'b', 'p', 0x01, 0x01}));
}

TEST(VCOutputPath, IsNotSentWhileInvalid) {
    VCOutputPath output;
    output._valid = false;
    EXPECT_EQ(errorOf([&] { output.serialize(); }), VelmorindalError::InvalidMessageError);
}

TEST(VCOutputPath, DecodesOddBytesAsRelayAndEvenOnesAsUsb) {
    VCOutputPath output;
    output.path = Relay;
    EXPECT_TRUE(output.deserialize(ByteBuffer{'r', 'b', 'p', 0x01, 0x02}));
    EXPECT_EQ(output.path, USB);
    for (unsigned value = 0; value <= 0xFF; ++value) {
        EXPECT_TRUE(output.deserialize(ByteBuffer{'r', 'b', 'p', 0x01, static_cast<std::uint8_t>(value)}));
        EXPECT_EQ(output.path, value % 2 == 0 ? USB : Relay) << value;
    }
}

TEST(VCOutputPath, AReplyOfWrongLengthIsNotValidAndKeepsThePath) {
    VCOutputPath output;
    output.path = Relay;
    EXPECT_EQ(printedBy([&] {
                  EXPECT_FALSE(output.deserialize(ByteBuffer{'r', 'b', 'p', 0x00}));
                  EXPECT_FALSE(output.deserialize(ByteBuffer{'r', 'b', 'p', 0x02, 0x00, 0x00}));
              }),
              "");
    EXPECT_FALSE(output._valid);
    EXPECT_EQ(output.path, Relay);
}

TEST(VCOutputPath, ReadsBackWhatItWrote) {
    for (const auto path : {USB, Relay}) {
        VCOutputPath output;
        output.path = path;
        EXPECT_EQ(throughTheWire(output).path, path);
    }
}

TEST(DeviceOutputPath, HasTwoRawValuesAndNoOther) {
    EXPECT_EQ(VCOutputPath::outputPathFromRawValue(0), USB);
    EXPECT_EQ(VCOutputPath::outputPathFromRawValue(1), Relay);
    EXPECT_EQ(VCOutputPath::outputPathFromRawValue(2), std::nullopt);
    EXPECT_EQ(VCOutputPath::outputPathFromRawValue(0xFF), std::nullopt);
}

}  // namespace
}  // namespace velmorindal
