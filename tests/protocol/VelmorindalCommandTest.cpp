#include "VelmorindalCommand.h"

#include <gtest/gtest.h>

#include <optional>

namespace velmorindal {
namespace {

using Protocol = VelmorindalCommandProtocol;

/// The protocol error that `action` throws, or nothing.
template <typename Action>
std::optional<VelmorindalError> errorOf(Action action) {
    try {
        action();
    } catch (const VelmorindalException& exception) {
        return exception.error;
    }
    return std::nullopt;
}

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
    VelmorindalCommand command;
    EXPECT_EQ(errorOf([&] { command.serialize(); }), VelmorindalError::NotImplementedError);
    EXPECT_EQ(errorOf([&] {
                  command.deserialize(ByteBuffer{'r', 'b', 's', 0x00});
              }),
              VelmorindalError::NotImplementedError);
    EXPECT_TRUE(command._valid);
    command._valid = false;
    EXPECT_EQ(errorOf([&] { command.serialize(); }), VelmorindalError::NotImplementedError);
}

}  // namespace
}  // namespace velmorindal
