#include "VCRelayConfig.h"

#include "ProtocolTest.h"

namespace velmorindal {
namespace {

using enum VCRelayConfig::RelayConfigMode;
using enum VCRelayConfig::RelayConfigType;

VCRelayConfig eightDifferentFields() {
    VCRelayConfig config;
    config.config_modeShort = RelayConfigModeToggle;
    config.config_modeLong = RelayConfigModeFollow;
    config.config_typeShort = RelayConfigTypeNC;
    config.config_typeLong = RelayConfigTypeNO;
    config.min_pulse_short = 0x0102;
    config.min_pulse_long = 0x0304;
    config.max_pulse_short = 0x0506;
    config.max_pulse_long = 0x0708;
    return config;
}

TEST(VCRelayConfig, StartsValidWithFixedModesAndTheRestZero) {
    const VCRelayConfig config;
    EXPECT_TRUE(config._valid);
    EXPECT_EQ(config.config_modeShort, RelayConfigModeFixed);
    EXPECT_EQ(config.config_modeLong, RelayConfigModeFixed);
    EXPECT_EQ(config.serialize(), (ByteBuffer{'c', 'b', 'y', 0x0C, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0}));
}

TEST(VCRelayConfig, EncodesTheShortHalfBeforeTheLongOneWithTheLowBytesFirst) {
    EXPECT_EQ(eightDifferentFields().serialize(), (ByteBuffer{'c', 'b', 'y', 0x0C,                 //
                                                              0x02, 0x01, 0x02, 0x01, 0x06, 0x05,  //
                                                              0x00, 0x00, 0x04, 0x03, 0x08, 0x07}));
}

TEST(VCRelayConfig, IsNotSentWhileInvalid) {
    VCRelayConfig config;
    config._valid = false;
    EXPECT_EQ(errorOf([&] { config.serialize(); }), VelmorindalError::InvalidMessageError);
}

TEST(VCRelayConfig, DecodesBothHalvesFromTheShortOneAndItsLowBytes) {
    VCRelayConfig config;
    EXPECT_TRUE(config.deserialize(ByteBuffer{'r', 'b', 'y', 0x0B,                 //
                                              0x02, 0x01, 0x0A, 0xAA, 0xE8, 0xBB,  //
                                              0x00, 0x00, 0x11, 0x22, 0x33}));
    EXPECT_TRUE(config._valid);
    EXPECT_EQ(config.config_modeShort, RelayConfigModeToggle);
    EXPECT_EQ(config.config_modeLong, RelayConfigModeToggle);
    EXPECT_EQ(config.config_typeShort, RelayConfigTypeNC);
    EXPECT_EQ(config.config_typeLong, RelayConfigTypeNC);
    EXPECT_EQ(config.min_pulse_short, 0x0A);
    EXPECT_EQ(config.min_pulse_long, 0x0A);
    EXPECT_EQ(config.max_pulse_short, 0xE8);
    EXPECT_EQ(config.max_pulse_long, 0xE8);
}

TEST(VCRelayConfig, DecodesTheUnusedModeThreeAsFixed) {
    VCRelayConfig config;
    config.config_modeShort = RelayConfigModeToggle;
    config.config_modeLong = RelayConfigModeToggle;
    EXPECT_TRUE(config.deserialize(ByteBuffer{'r', 'b', 'y', 0x0B, 0x03, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(config.config_modeShort, RelayConfigModeFixed);
    EXPECT_EQ(config.config_modeLong, RelayConfigModeFixed);
}

TEST(VCRelayConfig, DecodesTheTwoLowestBitsOfTheModeAndTheLowestOfTheType) {
    constexpr std::array modes{RelayConfigModeFollow, RelayConfigModeFixed, RelayConfigModeToggle,
                               RelayConfigModeFixed};
    for (unsigned value = 0; value <= 0xFF; ++value) {
        const auto byte = static_cast<std::uint8_t>(value);
        VCRelayConfig config;
        EXPECT_TRUE(
            config.deserialize(ByteBuffer{'r', 'b', 'y', 0x0B, byte, byte, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
        EXPECT_EQ(config.config_modeShort, modes[value % 4]) << value;
        EXPECT_EQ(config.config_typeShort, value % 2 == 0 ? RelayConfigTypeNO : RelayConfigTypeNC) << value;
    }
}

TEST(VCRelayConfig, RefusesAReplyOfTheSizeOfItsOwnCommand) {
    VCRelayConfig config = eightDifferentFields();
    EXPECT_EQ(printedBy([&] {
                  EXPECT_FALSE(config.deserialize(
                      ByteBuffer{'r', 'b', 'y', 0x0C, 1, 0, 10, 0, 0xE8, 3, 1, 0, 10, 0, 0xE8, 3}));
                  EXPECT_FALSE(config.deserialize(VCRelayConfig{}.serialize()));
              }),
              "");
    EXPECT_FALSE(config._valid);
}

TEST(VCRelayConfig, KeepsItsFieldsWhenAFrameFails) {
    VCRelayConfig config = eightDifferentFields();
    EXPECT_FALSE(config.deserialize(ByteBuffer{'r', 'b', 'y', 0x0A, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
    EXPECT_FALSE(config._valid);
    config._valid = true;
    EXPECT_EQ(config.serialize(), eightDifferentFields().serialize());
}

TEST(RelayConfigMode, HasThreeRawValuesAndNoOther) {
    EXPECT_EQ(VCRelayConfig::relayConfigModeFromRawValue(0), RelayConfigModeFollow);
    EXPECT_EQ(VCRelayConfig::relayConfigModeFromRawValue(1), RelayConfigModeFixed);
    EXPECT_EQ(VCRelayConfig::relayConfigModeFromRawValue(2), RelayConfigModeToggle);
    EXPECT_EQ(VCRelayConfig::relayConfigModeFromRawValue(3), std::nullopt);
    EXPECT_EQ(VCRelayConfig::relayConfigModeFromRawValue(0xFF), std::nullopt);
}

TEST(RelayConfigType, HasTwoRawValuesAndNoOther) {
    EXPECT_EQ(VCRelayConfig::relayConfigTypeFromRawValue(0), RelayConfigTypeNO);
    EXPECT_EQ(VCRelayConfig::relayConfigTypeFromRawValue(1), RelayConfigTypeNC);
    EXPECT_EQ(VCRelayConfig::relayConfigTypeFromRawValue(2), std::nullopt);
    EXPECT_EQ(VCRelayConfig::relayConfigTypeFromRawValue(0xFF), std::nullopt);
}

}  // namespace
}  // namespace velmorindal
