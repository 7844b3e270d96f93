#include "PortError.h"

namespace velmorindal {

std::string_view caseName(PortError error) {
    switch (error) {
        case PortError::failedToOpen:
            return "failedToOpen";
        case PortError::invalidPath:
            return "invalidPath";
        case PortError::mustReceiveOrTransmit:
            return "mustReceiveOrTransmit";
        case PortError::mustBeOpen:
            return "mustBeOpen";
        case PortError::stringsMustBeUTF8:
            return "stringsMustBeUTF8";
        case PortError::unableToConvertByteToCharacter:
            return "unableToConvertByteToCharacter";
        case PortError::deviceNotConnected:
            return "deviceNotConnected";
    }
    return "unnamed";
}

const char* PortException::what() const noexcept {
    // Every name is a literal, so it ends in a zero byte.
    return caseName(error).data();
}

}  // namespace velmorindal
