#include "MessageClass.h"

#include <algorithm>
#include <array>
#include <bit>
#include <concepts>
#include <cstdint>

#include "HexText.h"
#include "RawValue.h"
#include "VCAutoTune.h"
#include "VCHumDuration.h"
#include "VCHumThresholds.h"
#include "VCKeyboardConfig.h"
#include "VCLastHumDuration.h"
#include "VCOutputPath.h"
#include "VCProtocolSelect.h"
#include "VCRelayConfig.h"
#include "VCReset.h"
#include "VCStatus.h"
#include "VCVersion.h"
#include "VCWriteSettings.h"

namespace velmorindal {
namespace {

template <std::unsigned_integral Number>
Field field(std::string_view name, Number& value) {
    return {name, [&value] { return std::to_string(value); },
            [&value](std::string_view text) { value = numberFrom<Number>(text); }};
}

Field field(std::string_view name, bool& value) {
    return {name, [&value] { return std::string{value ? "1" : "0"}; },
            [&value](std::string_view text) { value = numberFrom<std::uint8_t>(text) != 0; }};
}

template <WireEnumeration Enumeration>
Field field(std::string_view name, Enumeration& value) {
    return {name, [&value] { return std::to_string(rawValue(value)); },
            [&value](std::string_view text) { value = Enumeration{numberFrom<std::uint8_t>(text)}; }};
}

Field field(std::string_view name, float& value) {
    return {name,
            [&value] {
                const auto bits = std::bit_cast<std::uint32_t>(value);
                ByteBuffer bytes;
                for (const unsigned shift : {24U, 16U, 8U, 0U}) {
                    bytes.push_back(static_cast<std::uint8_t>(bits >> shift & 0xFFU));
                }
                return hexText(bytes);
            },
            [&value](std::string_view text) {
                value = std::bit_cast<float>(numberFrom<std::uint32_t>(text, 16));
            }};
}

Field field(std::string_view name, std::string& value) {
    return {name,
            [&value] {
                return hexText(ByteBuffer{value.begin(), value.end()});
            },
            [&value](std::string_view text) {
                const ByteBuffer bytes = bytesFrom(text);
                value.assign(bytes.begin(), bytes.end());
            }};
}

using Fields = std::vector<Field>;

/// `members`: each with its name.
template <typename Message, typename... Members>
MessageClass classNamed(std::string_view name, Members... members) {
    return {
        name, []() -> std::unique_ptr<VelmorindalCommand> { return std::make_unique<Message>(); },
        [](const VelmorindalCommand& message) { return dynamic_cast<const Message*>(&message) != nullptr; },
        [members...](VelmorindalCommand& command) {
            auto& message = dynamic_cast<Message&>(command);
            return Fields{field("_valid", message._valid), field(members.first, message.*members.second)...};
        }};
}

}  // namespace

std::span<const MessageClass> allMessageClasses() {
    static const std::array all{
        classNamed<VCVersion>("VCVersion", std::pair{"_versionString", &VCVersion::_versionString}),
        classNamed<VCStatus>("VCStatus", std::pair{"_linkState", &VCStatus::_linkState}),
        classNamed<VCProtocolSelect>("VCProtocolSelect", std::pair{"proto", &VCProtocolSelect::proto}),
        classNamed<VCWriteSettings>("VCWriteSettings"),
        classNamed<VCReset>("VCReset"),
        classNamed<VCHumDuration>(
            "VCHumDuration", std::pair{"detect_mode", &VCHumDuration::detect_mode},
            std::pair{"min_short", &VCHumDuration::min_short},
            std::pair{"max_short", &VCHumDuration::max_short},
            std::pair{"min_long", &VCHumDuration::min_long}, std::pair{"max_long", &VCHumDuration::max_long},
            std::pair{"hold_on", &VCHumDuration::hold_on}, std::pair{"hold_off", &VCHumDuration::hold_off}),
        classNamed<VCHumThresholds>("VCHumThresholds",
                                    std::pair{"apThreshold", &VCHumThresholds::apThreshold},
                                    std::pair{"siThreshold", &VCHumThresholds::siThreshold}),
        classNamed<VCKeyboardConfig>("VCKeyboardConfig",
                                     std::pair{"shortKey0Modifier", &VCKeyboardConfig::shortKey0Modifier},
                                     std::pair{"shortKey0", &VCKeyboardConfig::shortKey0},
                                     std::pair{"shortKey1Modifier", &VCKeyboardConfig::shortKey1Modifier},
                                     std::pair{"shortKey1", &VCKeyboardConfig::shortKey1},
                                     std::pair{"longKey0Modifier", &VCKeyboardConfig::longKey0Modifier},
                                     std::pair{"longKey0", &VCKeyboardConfig::longKey0},
                                     std::pair{"longKey1Modifier", &VCKeyboardConfig::longKey1Modifier},
                                     std::pair{"longKey1", &VCKeyboardConfig::longKey1}),
        classNamed<VCOutputPath>("VCOutputPath", std::pair{"path", &VCOutputPath::path}),
        classNamed<VCRelayConfig>("VCRelayConfig",
                                  std::pair{"config_modeShort", &VCRelayConfig::config_modeShort},
                                  std::pair{"config_modeLong", &VCRelayConfig::config_modeLong},
                                  std::pair{"config_typeShort", &VCRelayConfig::config_typeShort},
                                  std::pair{"config_typeLong", &VCRelayConfig::config_typeLong},
                                  std::pair{"min_pulse_short", &VCRelayConfig::min_pulse_short},
                                  std::pair{"min_pulse_long", &VCRelayConfig::min_pulse_long},
                                  std::pair{"max_pulse_short", &VCRelayConfig::max_pulse_short},
                                  std::pair{"max_pulse_long", &VCRelayConfig::max_pulse_long}),
        classNamed<VCLastHumDuration>("VCLastHumDuration",
                                      std::pair{"_duration", &VCLastHumDuration::_duration},
                                      std::pair{"_sourceSI", &VCLastHumDuration::_sourceSI}),
        classNamed<VCAutoTune>("VCAutoTune", std::pair{"channel", &VCAutoTune::channel},
                               std::pair{"_minThreshold", &VCAutoTune::_minThreshold},
                               std::pair{"_maxThreshold", &VCAutoTune::_maxThreshold}),
    };
    return all;
}

const MessageClass& messageClassNamed(std::string_view name) {
    const auto found = std::ranges::find(allMessageClasses(), name, &MessageClass::name);
    if (found == allMessageClasses().end()) {
        refuse(name);
    }
    return *found;
}

std::string described(VelmorindalCommand* message) {
    if (message == nullptr) {
        return "none";
    }
    const auto found = std::ranges::find_if(allMessageClasses(),
                                            [&](const MessageClass& each) { return each.matches(*message); });
    if (found == allMessageClasses().end()) {
        return "a message of no known class";
    }
    std::string text{found->name};
    for (const Field& each : found->fields(*message)) {
        text.append(" ").append(each.name).append("=").append(each.text());
    }
    return text;
}

std::string sent(const VelmorindalCommand& message) {
    try {
        return hexText(message.serialize());
    } catch (const VelmorindalException& exception) {
        return exception.what();
    }
}

}  // namespace velmorindal
