#include <gtest/gtest.h>

#include <string>

#include "VCHumDuration.h"
#include "VCLastHumDuration.h"
#include "VCRelayConfig.h"

namespace velmorindal {
namespace {

/// The line about a frame that is not of a status.
std::string refusalOf(const ByteBuffer& frame) {
    testing::internal::CaptureStdout();
    EXPECT_FALSE(VelmorindalCommand::verifyHeader(frame, 's'));
    return testing::internal::GetCapturedStdout();
}

TEST(Asymmetries, AnErrorFrameIsRefusedAlthoughTheLineAboutItListsItsByte) {
    EXPECT_EQ(refusalOf({'e', 'b', 's', 0x01, 0x02}),
              "Message type unexpected:  101  command/response/error are  99 114 101\n");
}

TEST(Asymmetries, TheLineAboutAnotherTypeClosesAParenthesisThatNothingOpens) {
    EXPECT_EQ(refusalOf({'r', 'b', 'v', 0x01, 0x02}), "Expected message type  115 ). Got  118\n");
}

TEST(Asymmetries, ADurationIsSentInTwoBytesAndReadFromTheLowOneAlone) {
    VCHumDuration settings;
    settings.max_short = settings.min_long = 0x0119;
    ByteBuffer frame = settings.serialize();
    EXPECT_EQ(frame,
              (ByteBuffer{'c', 'b', 'd', 0x0B, 0, 0x00, 0x00, 0x19, 0x01, 0x19, 0x01, 0x00, 0x00, 0, 0}));
    EXPECT_TRUE(settings.deserialize(frame));
    EXPECT_EQ(settings.max_short, 0x19);
    EXPECT_EQ(settings.min_long, 0x19);

    VCLastHumDuration last;
    last._duration = 0x0119;
    frame = last.serialize();
    EXPECT_EQ(frame, (ByteBuffer{'c', 'b', 'l', 0x03, 0x19, 0x01, 0}));
    EXPECT_TRUE(last.deserialize(frame));
    EXPECT_EQ(last._duration, 0x19);
}

TEST(Asymmetries, BothJacksAreReadFromTheFirstHalfOfARelayAnswerOneByteShorterThanTheCommand) {
    VCRelayConfig config;
    EXPECT_TRUE(config.deserialize(
        ByteBuffer{'r', 'b', 'y', 0x0B, 2, 1, 0x19, 0x01, 0x2A, 0x01, 0, 0, 0x11, 0x00, 0x22}));
    EXPECT_EQ(config.config_modeShort, VCRelayConfig::RelayConfigMode::RelayConfigModeToggle);
    EXPECT_EQ(config.config_modeLong, config.config_modeShort);
    EXPECT_EQ(config.config_typeShort, VCRelayConfig::RelayConfigType::RelayConfigTypeNC);
    EXPECT_EQ(config.config_typeLong, config.config_typeShort);
    EXPECT_EQ(config.min_pulse_short, 0x19);
    EXPECT_EQ(config.min_pulse_long, 0x19);
    EXPECT_EQ(config.max_pulse_short, 0x2A);
    EXPECT_EQ(config.max_pulse_long, 0x2A);
}

}  // namespace
}  // namespace velmorindal
