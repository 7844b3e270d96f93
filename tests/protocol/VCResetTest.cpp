#include "VCReset.h"

#include "ProtocolTest.h"

namespace velmorindal {
namespace {

TEST(VCReset, EncodesAsAHeaderAlone) {
    EXPECT_EQ(VCReset{}.serialize(), (ByteBuffer{'c', 'b', 'z', 0x00}));
}

TEST(VCReset, IsSentEvenWhileInvalid) {
    VCReset message;
    message._valid = false;
    EXPECT_EQ(message.serialize(), (ByteBuffer{'c', 'b', 'z', 0x00}));
}

TEST(VCReset, CannotBeReceived) {
    VCReset message;
    EXPECT_EQ(errorOf([&] {
                  message.deserialize(ByteBuffer{'r', 'b', 'z', 0x00});
              }),
              VelmorindalError::NotImplementedError);
    EXPECT_TRUE(message._valid);
}

}  // namespace
}  // namespace velmorindal
