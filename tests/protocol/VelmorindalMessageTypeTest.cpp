#include "VelmorindalMessageType.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "RawValue.h"

namespace velmorindal {
namespace {

struct KnownType {
    VelmorindalMessageType type;
    char code;
    std::string_view name;
};

constexpr std::array knownTypes{
    KnownType{VelmorindalMessageType::none, '\0', "none"},
    KnownType{VelmorindalMessageType::humDuration, 'd', "humDuration"},
    KnownType{VelmorindalMessageType::humThresholds, 'h', "humThresholds"},
    KnownType{VelmorindalMessageType::keyboardConfig, 'k', "keyboardConfig"},
    KnownType{VelmorindalMessageType::lastHumDuration, 'l', "lastHumDuration"},
    KnownType{VelmorindalMessageType::outputPath, 'p', "outputPath"},
    KnownType{VelmorindalMessageType::status, 's', "status"},
    KnownType{VelmorindalMessageType::autoTune, 't', "autoTune"},
    KnownType{VelmorindalMessageType::version, 'v', "version"},
    KnownType{VelmorindalMessageType::writeSettings, 'w', "writeSettings"},
    KnownType{VelmorindalMessageType::protocolSelect, 'x', "protocolSelect"},
    KnownType{VelmorindalMessageType::relayConfig, 'y', "relayConfig"},
    KnownType{VelmorindalMessageType::reset, 'z', "reset"},
};

TEST(VelmorindalMessageType, HasTheCharactersOfTheDeviceAsCodes) {
    for (const KnownType& known : knownTypes) {
        EXPECT_EQ(rawValue(known.type), static_cast<std::uint8_t>(known.code)) << known.name;
        EXPECT_EQ(messageTypeFromCode(static_cast<std::uint8_t>(known.code)), known.type) << known.name;
    }
}

TEST(VelmorindalMessageType, NamesEachCase) {
    for (const KnownType& known : knownTypes) {
        EXPECT_EQ(caseName(known.type), known.name);
    }
}

TEST(VelmorindalMessageType, HasNoOtherCode) {
    std::size_t cases = 0;
    for (unsigned code = 0; code <= 0xFF; ++code) {
        const auto type = messageTypeFromCode(static_cast<std::uint8_t>(code));
        cases += type.has_value() ? 1 : 0;
        EXPECT_EQ(caseName(static_cast<VelmorindalMessageType>(code)).empty(), !type.has_value()) << code;
    }
    EXPECT_EQ(cases, knownTypes.size());
    EXPECT_EQ(messageTypeFromCode('A'), std::nullopt);
}

}  // namespace
}  // namespace velmorindal
