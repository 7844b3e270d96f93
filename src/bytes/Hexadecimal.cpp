#include "Hexadecimal.h"

namespace velmorindal {

std::string hexadecimal(std::span<const std::uint8_t> bytes, std::string_view separator) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += text.empty() ? "" : separator;
        text += hexadecimal(byte);
    }
    return text;
}

std::string hexadecimal(std::uint8_t byte) {
    constexpr std::string_view digits = "0123456789abcdef";
    return {digits[byte >> 4U], digits[byte & 0x0FU]};
}

}  // namespace velmorindal
