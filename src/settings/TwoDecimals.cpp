#include "TwoDecimals.h"

#include <array>
#include <charconv>

namespace velmorindal {

std::string twoDecimals(float value) {
    // The largest float has 39 digits before its point.
    std::array<char, 48> text{};
    const auto [end, error] =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, 2);
    return {text.data(), end};
}

}  // namespace velmorindal
