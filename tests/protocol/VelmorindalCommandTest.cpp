#include "VelmorindalCommand.h"

#include <gmock/gmock.h>

namespace velmorindal {
namespace {

using Protocol = VelmorindalCommandProtocol;

TEST(AddHeader, PutsKindMarkerTypeAndLengthBeforeThePayload) {
    const ByteBuffer payload{0x00, 0xFF, 0x62};
    EXPECT_EQ(Protocol::addHeader(payload, 'd', true), (ByteBuffer{'c', 'b', 'd', 0x03, 0x00, 0xFF, 0x62}));
    EXPECT_EQ(Protocol::addHeader(payload, 'd', false), (ByteBuffer{'r', 'b', 'd', 0x03, 0x00, 0xFF, 0x62}));
}

TEST(AddHeader, FitsAPayloadOf255Bytes) {
    const ByteBuffer frame = Protocol::addHeader(ByteBuffer(255, 0xAA), 'v', false);
    ASSERT_EQ(frame.size(), 259U);
    EXPECT_EQ(frame[3], 0xFF);
}

TEST(AddHeader, WrapsTheLengthOfALongerPayloadAndKeepsItsBytes) {
    ByteBuffer frame = Protocol::addHeader(ByteBuffer(256, 0xAA), 'v', true);
    EXPECT_EQ(frame.size(), 260U);
    EXPECT_EQ(frame[3], 0x00);
    EXPECT_EQ(frame.back(), 0xAA);
    frame = Protocol::addHeader(ByteBuffer(300, 0xAA), 'v', true);
    EXPECT_EQ(frame.size(), 304U);
    EXPECT_EQ(frame[3], 0x2C);
}

TEST(VelmorindalCommand, IsValidFromTheStart) {
    EXPECT_TRUE(VelmorindalCommand{}._valid);
}

TEST(VelmorindalCommand, ImplementsNeitherDirection) {
    const auto notImplemented = testing::Throws<VelmorindalException>(
        testing::Field(&VelmorindalException::error, VelmorindalError::NotImplementedError));
    VelmorindalCommand command;
    EXPECT_THAT([&] { command.serialize(); }, notImplemented);
    EXPECT_THAT([&] { command.deserialize(ByteBuffer{'r', 'b', 's', 0x00}); }, notImplemented);
    EXPECT_TRUE(command._valid);
    command._valid = false;
    EXPECT_THAT([&] { command.serialize(); }, notImplemented);
}

}  // namespace
}  // namespace velmorindal
