#include "VelmorindalCommand.h"

#include "ProtocolTest.h"

namespace velmorindal {
namespace {

using Protocol = VelmorindalCommandProtocol;

bool verified(const ByteBuffer& frame, std::uint8_t messageType) {
    return Protocol::verifyHeader(frame, messageType);
}

TEST(AddHeader, OfAnEmptyPayloadYieldsFourBytesTheLastZero) {
    EXPECT_EQ(Protocol::addHeader({}, 'v', true), (ByteBuffer{0x63, 0x62, 0x76, 0x00}));
}

TEST(AddHeader, PutsKindMarkerTypeAndLengthBeforeThePayload) {
    const ByteBuffer payload{0x00, 0xFF, 0x62};
    EXPECT_EQ(Protocol::addHeader(payload, 'd', true), (ByteBuffer{'c', 'b', 'd', 0x03, 0x00, 0xFF, 0x62}));
    EXPECT_EQ(Protocol::addHeader(payload, 'd', false), (ByteBuffer{'r', 'b', 'd', 0x03, 0x00, 0xFF, 0x62}));
}

TEST(AddHeader, TakesAnyTypeByte) {
    EXPECT_EQ(Protocol::addHeader({}, 0xFF, true), (ByteBuffer{'c', 'b', 0xFF, 0x00}));
}

TEST(AddHeader, FitsAPayloadOf255Bytes) {
    const ByteBuffer frame = Protocol::addHeader(ByteBuffer(255, 0xAA), 'v', false);
    ASSERT_EQ(frame.size(), 259U);
    EXPECT_EQ(frame[3], 0xFF);
    EXPECT_TRUE(verified(frame, 'v'));
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

TEST(VerifyHeader, PrintsNothingForAWholeFrame) {
    bool result = false;
    const std::string lines = printedBy([&] { result = verified({'r', 'b', 's', 0x01, 0x02}, 's'); });
    EXPECT_TRUE(result);
    EXPECT_EQ(lines, "");
}

TEST(VerifyHeader, AcceptsACommandEchoLikeAResponse) {
    EXPECT_TRUE(verified({'c', 'b', 's', 0x01, 0x02}, 's'));
}

TEST(VerifyHeader, AcceptsAHeaderAlone) {
    EXPECT_TRUE(verified({'r', 'b', 'w', 0x00}, 'w'));
}

TEST(VerifyHeader, ComparesTypesThatHaveNoCase) {
    EXPECT_TRUE(verified({'r', 'b', 'A', 0x00}, 'A'));
}

/// A frame that fails one check, and the line that names it.
struct Refusal {
    const char* what;
    ByteBuffer frame;
    std::uint8_t messageType;
    const char* line;
};

TEST(VerifyHeader, NamesTheFirstCheckThatFails) {
    const std::vector<Refusal> refusals{
        {"no bytes", {}, 'v', "Header length was  0  and I expected at least  4\n"},
        {"two bytes", {'r', 'b'}, 'v', "Header length was  2  and I expected at least  4\n"},
        {"three bytes", {'r', 'b', 'v'}, 'v', "Header length was  3  and I expected at least  4\n"},
        {"kind zero",
         {0x00, 'b', 's', 0x00},
         's',
         "Message type unexpected:  0  command/response/error are  99 114 101\n"},
        {"upper-case kind",
         {'C', 'b', 's', 0x00},
         's',
         "Message type unexpected:  67  command/response/error are  99 114 101\n"},
        {"text marker", {'r', 't', 's', 0x00}, 's', "Expected binary message ( 98 ). Got  116\n"},
        {"other type", {'r', 'b', 's', 0x00}, 'v', "Expected message type  118 ). Got  115\n"},
        {"truncated", {'r', 'b', 's', 0x02, 0x01}, 's', "Expected total payload length of  2  but got  1\n"},
        {"extended", {'r', 'b', 's', 0x00, 0x01}, 's', "Expected total payload length of  0  but got  1\n"},
        {"everything wrong at once",
         {0xFF, 0xFF, 0xFF, 0xFF},
         's',
         "Message type unexpected:  255  command/response/error are  99 114 101\n"},
        {"all but the kind wrong",
         {'c', 0xFF, 0xFF, 0xFF},
         's',
         "Expected binary message ( 98 ). Got  255\n"},
        {"type and length wrong", {'c', 'b', 0xFF, 0xFF}, 's', "Expected message type  115 ). Got  255\n"},
    };
    for (const Refusal& refusal : refusals) {
        bool result = true;
        const std::string lines = printedBy([&] { result = verified(refusal.frame, refusal.messageType); });
        EXPECT_FALSE(result) << refusal.what;
        EXPECT_EQ(lines, refusal.line) << refusal.what;
    }
}

TEST(VerifyHeader, RefusesAnErrorFrameAlthoughItsLineListsTheErrorByte) {
    bool result = true;
    const std::string lines = printedBy([&] { result = verified({'e', 'b', 's', 0x01, 0x02}, 's'); });
    EXPECT_FALSE(result);
    EXPECT_EQ(lines, "Message type unexpected:  101  command/response/error are  99 114 101\n");
}

TEST(VerifyHeader, DoesNotWrapTheLengthThatItCounts) {
    ByteBuffer frame = Protocol::addHeader(ByteBuffer(256, 0xAA), 'v', true);
    EXPECT_EQ(printedBy([&] { EXPECT_FALSE(verified(frame, 'v')); }),
              "Expected total payload length of  0  but got  256\n");
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
