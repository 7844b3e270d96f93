#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace velmorindal {

/// The name at the position of `value`, or an empty text for a value beyond the names.
template <typename Enumeration>
std::string_view nameAt(Enumeration value, std::span<const std::string_view> names) {
    const auto ordinal = static_cast<std::size_t>(value);
    return ordinal < names.size() ? names[ordinal] : std::string_view{};
}

}  // namespace velmorindal
