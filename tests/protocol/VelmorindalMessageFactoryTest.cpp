#include "VelmorindalMessageFactory.h"

#include "ProtocolTest.h"
#include "VCAutoTune.h"
#include "VCHumDuration.h"
#include "VCHumThresholds.h"
#include "VCKeyboardConfig.h"
#include "VCLastHumDuration.h"
#include "VCOutputPath.h"
#include "VCProtocolSelect.h"
#include "VCRelayConfig.h"
#include "VCStatus.h"
#include "VCVersion.h"

namespace velmorindal {
namespace {

std::unique_ptr<VelmorindalCommand> created(const ByteBuffer& frame) {
    return VelmorindalMessageFactory::createFromWire(frame);
}

template <typename Message>
void expectValid(const ByteBuffer& frame) {
    const auto message = created(frame);
    ASSERT_NE(message, nullptr) << frame[2];
    EXPECT_NE(dynamic_cast<const Message*>(message.get()), nullptr) << frame[2];
    EXPECT_TRUE(message->_valid) << frame[2];
}

TEST(VelmorindalMessageFactory, BuildsTheMessageOfEachTypeThatIsReceived) {
    expectValid<VCHumDuration>({'r', 'b', 'd', 0x0B, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    expectValid<VCHumThresholds>({'r', 'b', 'h', 0x08, 0, 0, 0, 0, 0, 0, 0, 0});
    expectValid<VCKeyboardConfig>({'r', 'b', 'k', 0x08, 0, 0, 0, 0, 0, 0, 0, 0});
    expectValid<VCLastHumDuration>({'r', 'b', 'l', 0x03, 0, 0, 0});
    expectValid<VCOutputPath>({'r', 'b', 'p', 0x01, 0});
    expectValid<VCStatus>({'r', 'b', 's', 0x01, 0});
    expectValid<VCAutoTune>({'r', 'b', 't', 0x08, 0, 0, 0, 0, 0, 0, 0, 0});
    expectValid<VCVersion>({'r', 'b', 'v', 0x00});
    expectValid<VCProtocolSelect>({'r', 'b', 'x', 0x01, 0});
    expectValid<VCRelayConfig>({'r', 'b', 'y', 0x0B, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
}

TEST(VelmorindalMessageFactory, YieldsNothingForAFrameShorterThanItsHeaderAndPrintsNothing) {
    EXPECT_EQ(printedBy([] {
                  EXPECT_EQ(created({}), nullptr);
                  EXPECT_EQ(created({'r', 'b', 's'}), nullptr);
              }),
              "");
}

TEST(VelmorindalMessageFactory, YieldsNothingForTypesThatAreNeverReceived) {
    EXPECT_EQ(printedBy([] {
                  EXPECT_EQ(created({'r', 'b', 'w', 0x00}), nullptr);
                  EXPECT_EQ(created({'r', 'b', 'z', 0x00}), nullptr);
              }),
              "");
}

TEST(VelmorindalMessageFactory, YieldsNothingForUnknownTypesAndForNone) {
    EXPECT_EQ(printedBy([] {
                  EXPECT_EQ(created({'r', 'b', 0x41, 0x00}), nullptr);
                  EXPECT_EQ(created({'r', 'b', 0x00, 0x00}), nullptr);
                  EXPECT_EQ(created({'r', 'b', 0xFF, 0x00}), nullptr);
              }),
              "");
}

TEST(VelmorindalMessageFactory, LooksAtTheTypeAloneBeforeTheMessageLooksAtTheRest) {
    std::unique_ptr<VelmorindalCommand> message;
    const std::string lines = printedBy([&] { message = created({'e', 'b', 's', 0x01, 0x02}); });
    ASSERT_NE(dynamic_cast<const VCStatus*>(message.get()), nullptr);
    EXPECT_FALSE(message->_valid);
    EXPECT_EQ(lines, "Message type unexpected:  101  command/response/error are  99 114 101\n");
}

}  // namespace
}  // namespace velmorindal
