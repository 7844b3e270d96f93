#pragma once

#include <cstdint>
#include <optional>
#include <type_traits>

namespace velmorindal {

/// An enumeration whose cases are the bytes that stand for them on the wire.
template <typename Enumeration>
concept WireEnumeration =
    std::is_enum_v<Enumeration> && std::is_same_v<std::underlying_type_t<Enumeration>, std::uint8_t>;

/// The byte that stands for `value` on the wire.
template <WireEnumeration Enumeration>
constexpr std::uint8_t rawValue(Enumeration value) {
    return static_cast<std::uint8_t>(value);
}

/// The case with that wire value, or nothing above `lastCase`. For enumerations that count from 0
/// without gaps.
template <WireEnumeration Enumeration>
constexpr std::optional<Enumeration> fromRawValue(std::uint8_t value, Enumeration lastCase) {
    if (value > rawValue(lastCase)) {
        return std::nullopt;
    }
    return static_cast<Enumeration>(value);
}

}  // namespace velmorindal
