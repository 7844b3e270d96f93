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
                return hexadecimal(bytes);
            },
            [&value](std::string_view text) {
                value = std::bit_cast<float>(numberFrom<std::uint32_t>(text, 16));
            }};
}

Field field(std::string_view name, std::string& value) {
    return {name,
            [&value] {
                return hexadecimal(ByteBuffer{value.begin(), value.end()});
            },
            [&value](std::string_view text) {
                const ByteBuffer bytes = bytesFrom(text);
                value.assign(bytes.begin(), bytes.end());
            }};
}

using Fields = std::vector<Field>;

Fields fieldsOf(VCVersion& message) {
    return {field("_versionString", message._versionString)};
}

Fields fieldsOf(VCStatus& message) {
    return {field("_linkState", message._linkState)};
}

Fields fieldsOf(VCProtocolSelect& message) {
    return {field("proto", message.proto)};
}

Fields fieldsOf(VCWriteSettings& /*message*/) {
    return {};
}

Fields fieldsOf(VCReset& /*message*/) {
    return {};
}

Fields fieldsOf(VCHumDuration& message) {
    return {field("detect_mode", message.detect_mode), field("min_short", message.min_short),
            field("max_short", message.max_short),     field("min_long", message.min_long),
            field("max_long", message.max_long),       field("hold_on", message.hold_on),
            field("hold_off", message.hold_off)};
}

Fields fieldsOf(VCHumThresholds& message) {
    return {field("apThreshold", message.apThreshold), field("siThreshold", message.siThreshold)};
}

Fields fieldsOf(VCKeyboardConfig& message) {
    return {field("shortKey0Modifier", message.shortKey0Modifier), field("shortKey0", message.shortKey0),
            field("shortKey1Modifier", message.shortKey1Modifier), field("shortKey1", message.shortKey1),
            field("longKey0Modifier", message.longKey0Modifier),   field("longKey0", message.longKey0),
            field("longKey1Modifier", message.longKey1Modifier),   field("longKey1", message.longKey1)};
}

Fields fieldsOf(VCOutputPath& message) {
    return {field("path", message.path)};
}

Fields fieldsOf(VCRelayConfig& message) {
    return {field("config_modeShort", message.config_modeShort),
            field("config_modeLong", message.config_modeLong),
            field("config_typeShort", message.config_typeShort),
            field("config_typeLong", message.config_typeLong),
            field("min_pulse_short", message.min_pulse_short),
            field("min_pulse_long", message.min_pulse_long),
            field("max_pulse_short", message.max_pulse_short),
            field("max_pulse_long", message.max_pulse_long)};
}

Fields fieldsOf(VCLastHumDuration& message) {
    return {field("_duration", message._duration), field("_sourceSI", message._sourceSI)};
}

Fields fieldsOf(VCAutoTune& message) {
    return {field("channel", message.channel), field("_minThreshold", message._minThreshold),
            field("_maxThreshold", message._maxThreshold)};
}

template <typename Message>
constexpr MessageClass classNamed(std::string_view name) {
    return {
        name, []() -> std::unique_ptr<VelmorindalCommand> { return std::make_unique<Message>(); },
        [](const VelmorindalCommand& message) { return dynamic_cast<const Message*>(&message) != nullptr; },
        [](VelmorindalCommand& message) {
            Fields fields = fieldsOf(dynamic_cast<Message&>(message));
            fields.insert(fields.begin(), field("_valid", message._valid));
            return fields;
        }};
}

constexpr std::array messageClasses{
    classNamed<VCVersion>("VCVersion"),
    classNamed<VCStatus>("VCStatus"),
    classNamed<VCProtocolSelect>("VCProtocolSelect"),
    classNamed<VCWriteSettings>("VCWriteSettings"),
    classNamed<VCReset>("VCReset"),
    classNamed<VCHumDuration>("VCHumDuration"),
    classNamed<VCHumThresholds>("VCHumThresholds"),
    classNamed<VCKeyboardConfig>("VCKeyboardConfig"),
    classNamed<VCOutputPath>("VCOutputPath"),
    classNamed<VCRelayConfig>("VCRelayConfig"),
    classNamed<VCLastHumDuration>("VCLastHumDuration"),
    classNamed<VCAutoTune>("VCAutoTune"),
};

}  // namespace

std::span<const MessageClass> allMessageClasses() {
    return messageClasses;
}

const MessageClass& messageClassNamed(std::string_view name) {
    const auto* const found = std::ranges::find(messageClasses, name, &MessageClass::name);
    if (found == messageClasses.end()) {
        refuse(name);
    }
    return *found;
}

std::string described(VelmorindalCommand* message) {
    if (message == nullptr) {
        return "none";
    }
    const auto* const found = std::ranges::find_if(
        messageClasses, [&](const MessageClass& each) { return each.matches(*message); });
    if (found == messageClasses.end()) {
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
        return hexadecimal(message.serialize());
    } catch (const VelmorindalException& exception) {
        return exception.what();
    }
}

}  // namespace velmorindal
