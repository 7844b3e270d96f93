#pragma once

#include <cstdint>

namespace velmorindal {

/// A set of navigation buttons, one bit for each.
struct ButtonOptions {
    std::int64_t rawValue = 0;

    static const ButtonOptions None;
    static const ButtonOptions Cancel;
    static const ButtonOptions Back;
    static const ButtonOptions Next;
    static const ButtonOptions Save;
    static const ButtonOptions Close;

    /// Whether every button of `other` is in this set.
    constexpr bool contains(ButtonOptions other) const {
        return (rawValue & other.rawValue) == other.rawValue;
    }

    friend constexpr ButtonOptions operator|(ButtonOptions left, ButtonOptions right) {
        return {.rawValue = left.rawValue | right.rawValue};
    }

    bool operator==(const ButtonOptions&) const = default;
};

inline constexpr ButtonOptions ButtonOptions::None{.rawValue = 0};
inline constexpr ButtonOptions ButtonOptions::Cancel{.rawValue = 1};
inline constexpr ButtonOptions ButtonOptions::Back{.rawValue = 2};
inline constexpr ButtonOptions ButtonOptions::Next{.rawValue = 4};
inline constexpr ButtonOptions ButtonOptions::Save{.rawValue = 8};
inline constexpr ButtonOptions ButtonOptions::Close{.rawValue = 16};

}  // namespace velmorindal
