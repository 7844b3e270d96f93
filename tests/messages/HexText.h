#pragma once

#include <charconv>
#include <concepts>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <system_error>

#include "VelmorindalCommand.h"

namespace velmorindal {

/// Ends the process with a failure and a line that names what could not be understood.
[[noreturn]] void refuse(std::string_view request);

/// The number that the whole of `text` is; refuses any other text.
template <std::unsigned_integral Number>
Number numberFrom(std::string_view text, int base = 10) {
    Number value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (result.ec != std::errc{} || result.ptr != text.data() + text.size()) {
        refuse(text);
    }
    return value;
}

/// The bytes of pairs of hexadecimal digits, "-" for none; refuses any other text.
ByteBuffer bytesFrom(std::string_view text);

/// The text that bytesFrom understands.
std::string hexText(std::span<const std::uint8_t> bytes);

}  // namespace velmorindal
