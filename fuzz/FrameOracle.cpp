#include "FrameOracle.h"

#include <array>
#include <string_view>

namespace velmorindal::oracle {
namespace {

std::string hex(unsigned byte) {
    constexpr std::string_view digits = "0123456789abcdef";
    return {digits[byte / 16], digits[byte % 16]};
}

std::string hex(const Bytes& bytes) {
    std::string text;
    for (const unsigned char byte : bytes) {
        text += hex(byte);
    }
    return text.empty() ? "-" : text;
}

/// A float's four bytes as its bit pattern is written down, the most significant first.
std::string pattern(const Bytes& payload, std::size_t start) {
    return hex(payload[start + 3]) + hex(payload[start + 2]) + hex(payload[start + 1]) + hex(payload[start]);
}

std::string field(const std::string& name, unsigned value) {
    return " " + name + "=" + std::to_string(value);
}

std::string field(const std::string& name, const std::string& value) {
    return " " + name + "=" + value;
}

/// The command that carries `payload`.
std::string command(unsigned char type, const Bytes& payload) {
    Bytes frame{'c', 'b', type, static_cast<unsigned char>(payload.size())};
    frame.insert(frame.end(), payload.begin(), payload.end());
    return hex(frame);
}

/// One message class: `length` is that of the whole frame, 0 for any. A message that failed its checks is
/// described from a payload of nothing but zeros.
struct Kind {
    unsigned char type;
    std::string_view name;
    std::size_t length;
    /// Sending one that failed its checks is an error.
    bool checksBeforeSending;
    std::string (*fields)(const Bytes& payload);
    /// Nothing where it cannot be sent.
    Bytes (*sent)(const Bytes& payload);
};

unsigned relayMode(const Bytes& p) {
    return p[0] % 4 == 3 ? 1 : p[0] % 4;
}

Bytes relaySent(const Bytes& p) {
    const auto mode = static_cast<unsigned char>(relayMode(p));
    const auto type = static_cast<unsigned char>(p[1] % 2);
    return {mode, type, p[2], 0, p[4], 0, mode, type, p[2], 0, p[4], 0};
}

const std::array<Kind, 10> kinds{{
    {'d', "VCHumDuration", 15, true,
     [](const Bytes& p) {
         return field("detect_mode", p[0] % 4U) + field("min_short", p[1]) + field("max_short", p[3]) +
                field("min_long", p[5]) + field("max_long", p[7]) + field("hold_on", p[9]) +
                field("hold_off", p[10]);
     },
     [](const Bytes& p) {
         return Bytes{static_cast<unsigned char>(p[0] % 4), p[1], 0, p[3], 0, p[5], 0, p[7], 0, p[9], p[10]};
     }},
    {'h', "VCHumThresholds", 12, false,
     [](const Bytes& p) { return field("apThreshold", pattern(p, 0)) + field("siThreshold", pattern(p, 4)); },
     [](const Bytes& p) { return Bytes(p.begin(), p.begin() + 8); }},
    {'k', "VCKeyboardConfig", 12, false,
     [](const Bytes& p) {
         return field("shortKey0Modifier", p[0]) + field("shortKey0", p[1]) +
                field("shortKey1Modifier", p[2]) + field("shortKey1", p[3]) +
                field("longKey0Modifier", p[4]) + field("longKey0", p[5]) + field("longKey1Modifier", p[6]) +
                field("longKey1", p[7]);
     },
     [](const Bytes& p) { return Bytes(p.begin(), p.begin() + 8); }},
    {'l', "VCLastHumDuration", 7, true,
     [](const Bytes& p) { return field("_duration", p[0]) + field("_sourceSI", p[2] != 0 ? 1U : 0U); },
     [](const Bytes& p) {
         return Bytes{p[0], 0, static_cast<unsigned char>(p[2] != 0 ? 1 : 0)};
     }},
    {'p', "VCOutputPath", 5, true, [](const Bytes& p) { return field("path", p[0] % 2U); },
     [](const Bytes& p) { return Bytes{static_cast<unsigned char>(p[0] % 2)}; }},
    {'s', "VCStatus", 5, true, [](const Bytes& p) { return field("_linkState", p[0]); }, nullptr},
    {'t', "VCAutoTune", 12, true,
     [](const Bytes& p) {
         return field("channel", 0U) + field("_minThreshold", pattern(p, 0)) +
                field("_maxThreshold", pattern(p, 4));
     },
     [](const Bytes&) { return Bytes{0}; }},
    {'v', "VCVersion", 0, true, [](const Bytes& p) { return field("_versionString", hex(p)); }, nullptr},
    {'x', "VCProtocolSelect", 5, true, [](const Bytes& p) { return field("proto", p[0] % 2U); },
     [](const Bytes& p) { return Bytes{static_cast<unsigned char>(p[0] % 2)}; }},
    {'y', "VCRelayConfig", 15, true,
     [](const Bytes& p) {
         const unsigned type = p[1] % 2U;
         return field("config_modeShort", relayMode(p)) + field("config_modeLong", relayMode(p)) +
                field("config_typeShort", type) + field("config_typeLong", type) +
                field("min_pulse_short", p[2]) + field("min_pulse_long", p[2]) +
                field("max_pulse_short", p[4]) + field("max_pulse_long", p[4]);
     },
     relaySent},
}};

Decoding decodedAs(const Kind& kind, const Bytes& frame) {
    Decoding result;
    result.line = lineOfCheck(frame, kind.type);
    const bool valid = result.line.empty() && (kind.length == 0 || frame.size() == kind.length);
    Bytes payload(kind.length == 0 ? 0 : kind.length - 4, 0);
    if (valid) {
        payload.assign(frame.begin() + 4, frame.end());
    } else if (kind.type == 'y') {
        payload[0] = 1;  // the modes of a fresh message are the fixed one
    }
    result.stops = valid && kind.type == 'v' && !isUTF8(payload);
    result.message = std::string{kind.name} + field("_valid", valid ? 1U : 0U) + kind.fields(payload);
    if (!valid && kind.checksBeforeSending) {
        result.sentAgain = "InvalidMessageError";
    } else if (kind.sent == nullptr) {
        result.sentAgain = "NotImplementedError";
    } else {
        result.sentAgain = command(kind.type, kind.sent(payload));
    }
    return result;
}

}  // namespace

std::string lineOfCheck(const Bytes& frame, unsigned expectedType) {
    const auto text = [](auto number) { return std::to_string(number); };
    if (frame.size() < 4) {
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
    if (frame[3] != frame.size() - 4) {
        return "Expected total payload length of  " + text(frame[3]) + "  but got  " +
               text(frame.size() - 4) + "\n";
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

Decoding decoded(const Bytes& frame) {
    if (frame.size() >= 4) {
        for (const Kind& kind : kinds) {
            if (kind.type == frame[2]) {
                return decodedAs(kind, frame);
            }
        }
        // 'w' and 'z' are never received, and the rest is nothing.
    }
    Decoding nothing;
    nothing.message = "none";
    return nothing;
}

}  // namespace velmorindal::oracle
