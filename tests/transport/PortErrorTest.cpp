#include "PortError.h"

#include <gtest/gtest.h>

#include <ostream>

#include "Print.h"

namespace velmorindal {
namespace {

struct NamedError {
    PortError error;
    std::int32_t rawValue;
    const char* name;
};

void PrintTo(const NamedError& error, std::ostream* out) {
    *out << error.name;
}

class EveryPortError : public testing::TestWithParam<NamedError> {};

TEST_P(EveryPortError, KeepsItsRawValueAndItsName) {
    const auto& [error, rawValue, name] = GetParam();

    EXPECT_EQ(static_cast<std::int32_t>(error), rawValue);
    EXPECT_EQ(caseName(error), name);
    EXPECT_STREQ(PortException{error}.what(), name);
    EXPECT_EQ(PrintItem{error}.text(), name);
}

INSTANTIATE_TEST_SUITE_P(PortError, EveryPortError,
                         testing::Values(NamedError{PortError::failedToOpen, -1, "failedToOpen"},
                                         NamedError{PortError::invalidPath, 0, "invalidPath"},
                                         NamedError{PortError::mustReceiveOrTransmit, 1,
                                                    "mustReceiveOrTransmit"},
                                         NamedError{PortError::mustBeOpen, 2, "mustBeOpen"},
                                         NamedError{PortError::stringsMustBeUTF8, 3, "stringsMustBeUTF8"},
                                         NamedError{PortError::unableToConvertByteToCharacter, 4,
                                                    "unableToConvertByteToCharacter"},
                                         NamedError{PortError::deviceNotConnected, 5, "deviceNotConnected"}),
                         [](const auto& parameters) { return std::string{parameters.param.name}; });

TEST(PortException, IsCaughtAsAStandardExceptionThatCarriesItsCase) {
    try {
        throw PortException{PortError::invalidPath};
    } catch (const std::exception& exception) {
        EXPECT_STREQ(exception.what(), "invalidPath");
        EXPECT_EQ(dynamic_cast<const PortException&>(exception).error, PortError::invalidPath);
    }
}

}  // namespace
}  // namespace velmorindal
