#include "FrameOracle.h"

#include <algorithm>
#include <array>

namespace velmorindal::oracle {
namespace {

constexpr std::size_t headerLength = 4;

std::string hex(const Bytes& bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const unsigned byte : bytes) {
        text += {digits[byte / 16], digits[byte % 16]};
    }
    return text.empty() ? "-" : text;
}

std::size_t widthOf(Kind kind) {
    return kind == Kind::word ? 2 : kind == Kind::pattern ? 4 : kind == Kind::text ? 0 : 1;
}

std::string textOf(Kind kind, const Bytes& value) {
    switch (kind) {
        case Kind::text:
            return hex(value);
        case Kind::pattern:
            return hex({value.rbegin(), value.rend()});
        case Kind::word:
            return std::to_string(value[0] + 256 * value[1]);
        default:
            return std::to_string(value[0]);
    }
}

const Message* messageOf(unsigned type) {
    const auto found = std::ranges::find_if(messages(), [type](const Message& message) {
        return static_cast<unsigned char>(message.type) == type;
    });
    return found == messages().end() ? nullptr : &*found;
}

}  // namespace

const std::vector<Message>& messages() {
    using enum Kind;
    using enum Sending;
    // The name, the kind, the place in an answer, the place in a command, the first value.
    static const std::vector<Message> all{
        {'v', "VCVersion", anyLength, never, {{"_versionString", text, 0, {}}}},
        {'s', "VCStatus", 1, never, {{"_linkState", byte, 0, {}}}},
        {'x', "VCProtocolSelect", 1, whenValid, {{"proto", bit, 0, 0}}},
        {'w', "VCWriteSettings", notReceived, always, {}},
        {'z', "VCReset", notReceived, always, {}},
        {'d',
         "VCHumDuration",
         11,
         whenValid,
         {{"detect_mode", twoBits, 0, 0},
          {"min_short", word, 1, 1},
          {"max_short", word, 3, 3},
          {"min_long", word, 5, 5},
          {"max_long", word, 7, 7},
          {"hold_on", byte, 9, 9},
          {"hold_off", byte, 10, 10}}},
        {'h', "VCHumThresholds", 8, always, {{"apThreshold", pattern, 0, 0}, {"siThreshold", pattern, 4, 4}}},
        {'k',
         "VCKeyboardConfig",
         8,
         always,
         {{"shortKey0Modifier", byte, 0, 0},
          {"shortKey0", byte, 1, 1},
          {"shortKey1Modifier", byte, 2, 2},
          {"shortKey1", byte, 3, 3},
          {"longKey0Modifier", byte, 4, 4},
          {"longKey0", byte, 5, 5},
          {"longKey1Modifier", byte, 6, 6},
          {"longKey1", byte, 7, 7}}},
        {'p', "VCOutputPath", 1, whenValid, {{"path", bit, 0, 0}}},
        // Both halves are read from the first one.
        {'y',
         "VCRelayConfig",
         11,
         whenValid,
         {{"config_modeShort", relayMode, 0, 0, 1},
          {"config_modeLong", relayMode, 0, 6, 1},
          {"config_typeShort", bit, 1, 1},
          {"config_typeLong", bit, 1, 7},
          {"min_pulse_short", word, 2, 2},
          {"min_pulse_long", word, 2, 8},
          {"max_pulse_short", word, 4, 4},
          {"max_pulse_long", word, 4, 10}}},
        {'l', "VCLastHumDuration", 3, whenValid, {{"_duration", word, 0, 0}, {"_sourceSI", truth, 2, 2}}},
        {'t',
         "VCAutoTune",
         8,
         whenValid,
         {{"channel", byte, {}, 0}, {"_minThreshold", pattern, 0, {}}, {"_maxThreshold", pattern, 4, {}}}},
    };
    return all;
}

Bytes valueFrom(Kind kind, const Bytes& payload, std::size_t start) {
    constexpr std::array<unsigned char, 4> relayModes{0, 1, 2, 1};
    const auto first = payload.begin() + static_cast<std::ptrdiff_t>(start);
    switch (kind) {
        case Kind::text:
            return payload;
        case Kind::pattern:
            return {first, first + 4};
        case Kind::word:
            return {*first, 0};
        case Kind::byte:
            return {*first};
        case Kind::bit:
            return {static_cast<unsigned char>(*first % 2)};
        case Kind::twoBits:
            return {static_cast<unsigned char>(*first % 4)};
        case Kind::relayMode:
            return {relayModes[*first % 4]};
        case Kind::truth:
            return {static_cast<unsigned char>(*first != 0 ? 1 : 0)};
    }
    return {};
}

Object::Object(const Message& itsMessage) : message{&itsMessage} {
    for (const Field& field : message->fields) {
        values.emplace_back(widthOf(field.kind), field.first);
    }
}

std::vector<std::pair<std::string, std::string>> Object::texts() const {
    std::vector<std::pair<std::string, std::string>> all{{"_valid", valid ? "1" : "0"}};
    for (std::size_t index = 0; index < values.size(); ++index) {
        const Field& field = message->fields[index];
        all.emplace_back(field.name, textOf(field.kind, values[index]));
    }
    return all;
}

std::string Object::description() const {
    std::string text{message->name};
    for (const auto& [name, value] : texts()) {
        text.append(" ").append(name).append("=").append(value);
    }
    return text;
}

Bytes frame(char kind, char type, const Bytes& payload) {
    Bytes bytes{static_cast<unsigned char>(kind), 'b', static_cast<unsigned char>(type),
                static_cast<unsigned char>(payload.size())};
    bytes.insert(bytes.end(), payload.begin(), payload.end());
    return bytes;
}

Bytes query(char type) {
    return frame('c', type);
}

std::string lineOfCheck(const Bytes& frame, unsigned expectedType) {
    const auto text = [](auto number) { return std::to_string(number); };
    if (frame.size() < headerLength) {
        return "Header length was  " + text(frame.size()) + "  and I expected at least  4\n";
    }
    if (frame[0] != 'c' && frame[0] != 'r') {
        return "Message type unexpected:  " + text(frame[0]) + "  command/response/error are  99 114 101\n";
    }
    if (frame[1] != 'b') {
        return "Expected binary message ( 98 ). Got  " + text(frame[1]) + "\n";
    }
    if (frame[2] != expectedType) {
        return "Expected message type  " + text(expectedType) + " ). Got  " + text(frame[2]) + "\n";
    }
    if (frame[3] != frame.size() - headerLength) {
        return "Expected total payload length of  " + text(frame[3]) + "  but got  " +
               text(frame.size() - headerLength) + "\n";
    }
    return "";
}

bool isUTF8(const Bytes& text) {
    for (std::size_t start = 0; start < text.size();) {
        const unsigned first = text[start];
        const std::size_t length = first < 0x80   ? 1
                                   : first < 0xC0 ? 0
                                   : first < 0xE0 ? 2
                                   : first < 0xF0 ? 3
                                                  : 4;
        if (length == 0 || first > 0xF7 || start + length > text.size()) {
            return false;
        }
        unsigned scalar = length == 1 ? first : first % (1U << (7U - length));
        for (std::size_t index = 1; index < length; ++index) {
            if (text[start + index] / 64 != 2) {
                return false;
            }
            scalar = scalar * 64 + text[start + index] % 64;
        }
        constexpr std::array<unsigned, 5> smallest{0, 0, 0x80, 0x800, 0x10000};
        const bool surrogate = scalar >= 0xD800 && scalar <= 0xDFFF;
        if (scalar < smallest[length] || scalar > 0x10FFFF || surrogate) {
            return false;
        }
        start += length;
    }
    return true;
}

std::string sent(const Object& object) {
    const Message& message = *object.message;
    if (!object.valid && message.sending != Sending::always) {
        return "InvalidMessageError";
    }
    if (message.sending == Sending::never) {
        return "NotImplementedError";
    }
    Bytes payload;
    for (std::size_t index = 0; index < object.values.size(); ++index) {
        const Bytes& value = object.values[index];
        if (const auto place = message.fields[index].inCommand) {
            payload.resize(std::max(payload.size(), *place + value.size()));
            std::ranges::copy(value, payload.begin() + static_cast<std::ptrdiff_t>(*place));
        }
    }
    return hex(frame('c', message.type, payload));
}

Reception receive(Object& object, const Bytes& frame) {
    const Message& message = *object.message;
    if (message.answerLength == notReceived) {
        return {.error = "NotImplementedError"};
    }
    const std::string line = lineOfCheck(frame, static_cast<unsigned char>(message.type));
    object.valid = line.empty() &&
                   (message.answerLength == anyLength || frame.size() == headerLength + message.answerLength);
    if (!object.valid) {
        return {.line = line};
    }
    const Bytes payload(frame.begin() + headerLength, frame.end());
    for (std::size_t index = 0; index < object.values.size(); ++index) {
        const Field& field = message.fields[index];
        if (field.inAnswer) {
            object.values[index] = valueFrom(field.kind, payload, *field.inAnswer);
        }
    }
    return {.stops = message.type == 'v' && !isUTF8(payload)};
}

Decoding decoded(const Bytes& frame) {
    const Message* const message = frame.size() < headerLength ? nullptr : messageOf(frame[2]);
    if (message == nullptr || message->answerLength == notReceived) {
        return {.message = "none"};
    }
    Object object{*message};
    const Reception reception = receive(object, frame);
    return {.message = object.description(),
            .line = reception.line,
            .sentAgain = sent(object),
            .stops = reception.stops};
}

}  // namespace velmorindal::oracle
