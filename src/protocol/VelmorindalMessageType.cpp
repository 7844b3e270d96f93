#include "VelmorindalMessageType.h"

#include <algorithm>
#include <array>

namespace velmorindal {
namespace {

struct NamedType {
    VelmorindalMessageType type;
    std::string_view name;
};

constexpr std::array namedTypes{
    NamedType{VelmorindalMessageType::none, "none"},
    NamedType{VelmorindalMessageType::humDuration, "humDuration"},
    NamedType{VelmorindalMessageType::humThresholds, "humThresholds"},
    NamedType{VelmorindalMessageType::keyboardConfig, "keyboardConfig"},
    NamedType{VelmorindalMessageType::lastHumDuration, "lastHumDuration"},
    NamedType{VelmorindalMessageType::outputPath, "outputPath"},
    NamedType{VelmorindalMessageType::status, "status"},
    NamedType{VelmorindalMessageType::autoTune, "autoTune"},
    NamedType{VelmorindalMessageType::version, "version"},
    NamedType{VelmorindalMessageType::writeSettings, "writeSettings"},
    NamedType{VelmorindalMessageType::protocolSelect, "protocolSelect"},
    NamedType{VelmorindalMessageType::relayConfig, "relayConfig"},
    NamedType{VelmorindalMessageType::reset, "reset"},
};

}  // namespace

std::optional<VelmorindalMessageType> messageTypeFromCode(std::uint8_t code) {
    const auto type = static_cast<VelmorindalMessageType>(code);
    if (std::ranges::find(namedTypes, type, &NamedType::type) == namedTypes.end()) {
        return std::nullopt;
    }
    return type;
}

std::string_view caseName(VelmorindalMessageType type) {
    const auto* const found = std::ranges::find(namedTypes, type, &NamedType::type);
    return found == namedTypes.end() ? std::string_view{} : found->name;
}

}  // namespace velmorindal
