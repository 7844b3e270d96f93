#include "VCStatus.h"

#include "ProtocolTest.h"

namespace velmorindal {
namespace {

TEST(VCStatus, StartsValidAndZero) {
    const VCStatus status;
    EXPECT_TRUE(status._valid);
    EXPECT_EQ(status._linkState, 0);
}

TEST(VCStatus, DecodesTheLinkState) {
    VCStatus status;
    EXPECT_TRUE(status.deserialize(ByteBuffer{'r', 'b', 's', 0x01, 0x02}));
    EXPECT_TRUE(status._valid);
    EXPECT_EQ(status._linkState, 2);
}

TEST(VCStatus, TakesAnyLinkStateAsItCame) {
    VCStatus status;
    EXPECT_TRUE(status.deserialize(ByteBuffer{'r', 'b', 's', 0x01, 0xFF}));
    EXPECT_EQ(status._linkState, 255);
}

TEST(VCStatus, AStatusReplyOfWrongLengthIsNotValidAndPrintsNothing) {
    VCStatus status;
    status._linkState = 7;
    EXPECT_EQ(printedBy([&] {
                  EXPECT_FALSE(status.deserialize(ByteBuffer{'r', 'b', 's', 0x02, 0x02, 0x00}));
                  EXPECT_FALSE(status.deserialize(ByteBuffer{'r', 'b', 's', 0x00}));
              }),
              "");
    EXPECT_FALSE(status._valid);
    EXPECT_EQ(status._linkState, 7);
}

TEST(VCStatus, AFrameOfAnotherTypeIsNotValid) {
    VCStatus status;
    EXPECT_EQ(printedBy([&] {
                  EXPECT_FALSE(status.deserialize(ByteBuffer{'r', 'b', 'p', 0x01, 0x02}));
              }),
              "Expected message type  115 ). Got  112\n");
    EXPECT_FALSE(status._valid);
}

TEST(VCStatus, BecomesValidAgainWithTheNextGoodFrame) {
    VCStatus status;
    EXPECT_FALSE(status.deserialize(ByteBuffer{'r', 'b', 's', 0x00}));
    EXPECT_TRUE(status.deserialize(ByteBuffer{'r', 'b', 's', 0x01, 0x01}));
    EXPECT_TRUE(status._valid);
}

TEST(VCStatus, CannotBeSent) {
    VCStatus status;
    EXPECT_EQ(errorOf([&] { status.serialize(); }), VelmorindalError::NotImplementedError);
    status._valid = false;
    EXPECT_EQ(errorOf([&] { status.serialize(); }), VelmorindalError::InvalidMessageError);
}

}  // namespace
}  // namespace velmorindal
