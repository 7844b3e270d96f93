#include <gtest/gtest.h>

#include <optional>

#include "VCHumDuration.h"
#include "VCOutputPath.h"
#include "VCProtocolSelect.h"
#include "VCRelayConfig.h"

namespace velmorindal {
namespace {

TEST(RawValues, AreTheCasesInOrderAndNoOther) {
    EXPECT_EQ(VCHumDuration::detectModeFromRawValue(0), VCHumDuration::DetectMode::DetectModeContinuous);
    EXPECT_EQ(VCHumDuration::detectModeFromRawValue(1), VCHumDuration::DetectMode::DetectModeShortOnly);
    EXPECT_EQ(VCHumDuration::detectModeFromRawValue(2), VCHumDuration::DetectMode::DetectModeLongOnly);
    EXPECT_EQ(VCHumDuration::detectModeFromRawValue(3), VCHumDuration::DetectMode::DetectModeShortAndLong);
    EXPECT_EQ(VCHumDuration::detectModeFromRawValue(4), std::nullopt);
    using Mode = VCRelayConfig::RelayConfigMode;
    EXPECT_EQ(VCRelayConfig::relayConfigModeFromRawValue(0), Mode::RelayConfigModeFollow);
    EXPECT_EQ(VCRelayConfig::relayConfigModeFromRawValue(1), Mode::RelayConfigModeFixed);
    EXPECT_EQ(VCRelayConfig::relayConfigModeFromRawValue(2), Mode::RelayConfigModeToggle);
    EXPECT_EQ(VCRelayConfig::relayConfigModeFromRawValue(3), std::nullopt);
    using Type = VCRelayConfig::RelayConfigType;
    EXPECT_EQ(VCRelayConfig::relayConfigTypeFromRawValue(0), Type::RelayConfigTypeNO);
    EXPECT_EQ(VCRelayConfig::relayConfigTypeFromRawValue(1), Type::RelayConfigTypeNC);
    EXPECT_EQ(VCRelayConfig::relayConfigTypeFromRawValue(2), std::nullopt);
    EXPECT_EQ(VCOutputPath::outputPathFromRawValue(0), VCOutputPath::OutputPath::USB);
    EXPECT_EQ(VCOutputPath::outputPathFromRawValue(1), VCOutputPath::OutputPath::Relay);
    EXPECT_EQ(VCOutputPath::outputPathFromRawValue(2), std::nullopt);
    EXPECT_EQ(VCProtocolSelect::commProtocolFromRawValue(0), VCProtocolSelect::CommProtocol::Gazell);
    EXPECT_EQ(VCProtocolSelect::commProtocolFromRawValue(1), VCProtocolSelect::CommProtocol::Bluetooth);
    EXPECT_EQ(VCProtocolSelect::commProtocolFromRawValue(2), std::nullopt);
}

}  // namespace
}  // namespace velmorindal
