// Answers requests about frames, so that a program in another language can compare its own codec with ours.
//
// Each line of standard input is one request; bytes are written in hexadecimal, "-" stands for no bytes,
// floats are eight hexadecimal digits of their bit pattern, texts are their bytes, everything else is
// decimal:
//
//     create BYTES                          what the factory makes of a frame
//     verify TYPE BYTES                     whether a frame is one of that type
//     deserialize CLASS BYTES FIELD=VALUE.. what becomes of an object with these fields
//     serialize CLASS FIELD=VALUE..         the frame of an object with these fields
//
// The answer is what the call printed, followed by one line that starts with "= ".

#include <unistd.h>

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <concepts>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "diagnostics/Print.h"
#include "protocol/RawValue.h"
#include "protocol/VCAutoTune.h"
#include "protocol/VCHumDuration.h"
#include "protocol/VCHumThresholds.h"
#include "protocol/VCKeyboardConfig.h"
#include "protocol/VCLastHumDuration.h"
#include "protocol/VCOutputPath.h"
#include "protocol/VCProtocolSelect.h"
#include "protocol/VCRelayConfig.h"
#include "protocol/VCReset.h"
#include "protocol/VCStatus.h"
#include "protocol/VCVersion.h"
#include "protocol/VCWriteSettings.h"
#include "protocol/VelmorindalMessageFactory.h"

namespace velmorindal {
namespace {

[[noreturn]] void refuse(std::string_view request) {
    writeLine(STDERR_FILENO, "not a request: " + std::string{request});
    std::exit(EXIT_FAILURE);
}

template <std::unsigned_integral Number>
Number numberFrom(std::string_view text, int base = 10) {
    Number value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (result.ec != std::errc{} || result.ptr != text.data() + text.size()) {
        refuse(text);
    }
    return value;
}

ByteBuffer bytesFrom(std::string_view text) {
    ByteBuffer bytes;
    if (text == "-") {
        return bytes;
    }
    if (text.size() % 2 != 0) {
        refuse(text);
    }
    for (std::size_t start = 0; start < text.size(); start += 2) {
        bytes.push_back(numberFrom<std::uint8_t>(text.substr(start, 2), 16));
    }
    return bytes;
}

template <typename Bytes>
std::string hexadecimal(const Bytes& bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const auto entry : bytes) {
        const auto byte = static_cast<std::uint8_t>(entry);
        text += digits[byte >> 4U];
        text += digits[byte & 0x0FU];
    }
    return text.empty() ? "-" : text;
}

/// A field of a message as text: how to look at it and how to set it.
struct Field {
    std::string_view name;
    std::function<std::string()> text;
    std::function<void(std::string_view)> set;
};

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
                return hexadecimal(std::array{bits >> 24U, bits >> 16U, bits >> 8U, bits});
            },
            [&value](std::string_view text) {
                value = std::bit_cast<float>(numberFrom<std::uint32_t>(text, 16));
            }};
}

Field field(std::string_view name, std::string& value) {
    return {name, [&value] { return hexadecimal(value); },
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

struct MessageClass {
    std::string_view name;
    std::unique_ptr<VelmorindalCommand> (*make)();
    bool (*matches)(const VelmorindalCommand&);
    Fields (*fields)(VelmorindalCommand&);
};

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

const MessageClass& classOf(const std::string& name) {
    const auto* const found = std::ranges::find(messageClasses, name, &MessageClass::name);
    if (found == messageClasses.end()) {
        refuse(name);
    }
    return *found;
}

std::string described(VelmorindalCommand& message) {
    const auto* const messageClass =
        std::ranges::find_if(messageClasses, [&](const auto& each) { return each.matches(message); });
    std::string text{messageClass->name};
    for (const Field& each : messageClass->fields(message)) {
        text += ' ';
        text += each.name;
        text += '=';
        text += each.text();
    }
    return text;
}

/// The object that the rest of a request describes field by field.
std::unique_ptr<VelmorindalCommand> objectFrom(const MessageClass& messageClass, std::istream& request) {
    auto message = messageClass.make();
    const Fields fields = messageClass.fields(*message);
    for (std::string assignment; request >> assignment;) {
        const std::size_t equals = assignment.find('=');
        const auto found = std::ranges::find(fields, assignment.substr(0, equals), &Field::name);
        if (equals == std::string::npos || found == fields.end()) {
            refuse(assignment);
        }
        found->set(std::string_view{assignment}.substr(equals + 1));
    }
    return message;
}

std::string answerToCreate(std::istream& request) {
    std::string bytes;
    request >> bytes;
    const auto message = VelmorindalMessageFactory::createFromWire(bytesFrom(bytes));
    return message ? described(*message) : "nothing";
}

std::string answerToVerify(std::istream& request) {
    std::string type;
    std::string bytes;
    request >> type >> bytes;
    const bool whole =
        VelmorindalCommandProtocol::verifyHeader(bytesFrom(bytes), numberFrom<std::uint8_t>(type));
    return whole ? "true" : "false";
}

std::string answerToDeserialize(std::istream& request) {
    std::string name;
    std::string bytes;
    request >> name >> bytes;
    const auto message = objectFrom(classOf(name), request);
    const bool result = message->deserialize(bytesFrom(bytes));
    return (result ? "true " : "false ") + described(*message);
}

std::string answerToSerialize(std::istream& request) {
    std::string name;
    request >> name;
    const auto message = objectFrom(classOf(name), request);
    return hexadecimal(message->serialize());
}

struct Verb {
    std::string_view name;
    std::string (*answer)(std::istream& request);
};

constexpr std::array verbs{
    Verb{"create", answerToCreate},
    Verb{"verify", answerToVerify},
    Verb{"deserialize", answerToDeserialize},
    Verb{"serialize", answerToSerialize},
};

std::string answerTo(const std::string& line) {
    std::istringstream request{line};
    std::string name;
    request >> name;
    const auto* const verb = std::ranges::find(verbs, name, &Verb::name);
    if (verb == verbs.end()) {
        refuse(line);
    }
    try {
        return verb->answer(request);
    } catch (const VelmorindalException& exception) {
        return std::string{"throws "} + exception.what();
    }
}

}  // namespace
}  // namespace velmorindal

int main() {
    for (std::string line; std::getline(std::cin, line);) {
        velmorindal::writeLine(STDOUT_FILENO, "= " + velmorindal::answerTo(line));
    }
    return EXIT_SUCCESS;
}
