#include "PortError.h"

#include <gtest/gtest.h>

#include "Print.h"

namespace velmorindal {
namespace {

struct NamedError {
    PortError error;
    std::int32_t rawValue;
    const char* name;
};

TEST(PortError, KeepsItsRawValueAndItsName) {
    for (const auto& [error, rawValue, name] : {
             NamedError{PortError::failedToOpen, -1, "failedToOpen"},
             NamedError{PortError::invalidPath, 0, "invalidPath"},
             NamedError{PortError::mustReceiveOrTransmit, 1, "mustReceiveOrTransmit"},
             NamedError{PortError::mustBeOpen, 2, "mustBeOpen"},
             NamedError{PortError::stringsMustBeUTF8, 3, "stringsMustBeUTF8"},
             NamedError{PortError::unableToConvertByteToCharacter, 4, "unableToConvertByteToCharacter"},
             NamedError{PortError::deviceNotConnected, 5, "deviceNotConnected"},
         }) {
        EXPECT_EQ(static_cast<std::int32_t>(error), rawValue) << name;
        EXPECT_EQ(caseName(error), name);
        const PortException exception{error};
        EXPECT_EQ(exception.error, error);
        EXPECT_STREQ(static_cast<const std::exception&>(exception).what(), name);
        EXPECT_EQ(PrintItem{error}.text(), name);
    }
}

}  // namespace
}  // namespace velmorindal
