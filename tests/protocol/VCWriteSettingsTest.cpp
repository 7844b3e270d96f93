#include "VCWriteSettings.h"

#include "ProtocolTest.h"

namespace velmorindal {
namespace {

TEST(VCWriteSettings, EncodesAsAHeaderAlone) {
    EXPECT_EQ(VCWriteSettings{}.serialize(), (ByteBuffer{'c', 'b', 'w', 0x00}));
}

TEST(VCWriteSettings, IsSentEvenWhileInvalid) {
    VCWriteSettings message;
    message._valid = false;
    EXPECT_EQ(message.serialize(), (ByteBuffer{'c', 'b', 'w', 0x00}));
}

TEST(VCWriteSettings, CannotBeReceived) {
    VCWriteSettings message;
    EXPECT_EQ(errorOf([&] {
                  message.deserialize(ByteBuffer{'r', 'b', 'w', 0x00});
              }),
              VelmorindalError::NotImplementedError);
    EXPECT_TRUE(message._valid);
}

}  // namespace
}  // namespace velmorindal
