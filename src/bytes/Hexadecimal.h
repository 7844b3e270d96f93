#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace velmorindal {

/// Two lowercase hexadecimal digits for each byte, with `separator` between the bytes. Any thread.
std::string hexadecimal(std::span<const std::uint8_t> bytes, std::string_view separator);

/// The two digits of one byte. Any thread.
std::string hexadecimal(std::uint8_t byte);

}  // namespace velmorindal
