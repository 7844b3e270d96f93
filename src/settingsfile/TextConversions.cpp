#include "TextConversions.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <limits>
#include <optional>
#include <system_error>

namespace velmorindal {

namespace {

constexpr std::string_view digits = "0123456789";

std::string_view withoutLeadingWhiteSpace(std::string_view text) {
    constexpr std::array<std::string_view, 25> whiteSpace{" ",
                                                          "\t",
                                                          "\n",
                                                          "\v",
                                                          "\f",
                                                          "\r",
                                                          "\xC2\x85",
                                                          "\xC2\xA0",
                                                          "\xE1\x9A\x80",
                                                          "\xE2\x80\x80",
                                                          "\xE2\x80\x81",
                                                          "\xE2\x80\x82",
                                                          "\xE2\x80\x83",
                                                          "\xE2\x80\x84",
                                                          "\xE2\x80\x85",
                                                          "\xE2\x80\x86",
                                                          "\xE2\x80\x87",
                                                          "\xE2\x80\x88",
                                                          "\xE2\x80\x89",
                                                          "\xE2\x80\x8A",
                                                          "\xE2\x80\xA8",
                                                          "\xE2\x80\xA9",
                                                          "\xE2\x80\xAF",
                                                          "\xE2\x81\x9F",
                                                          "\xE3\x80\x80"};
    while (true) {
        const auto* const space = std::ranges::find_if(
            whiteSpace, [text](std::string_view candidate) { return text.starts_with(candidate); });
        if (space == whiteSpace.end()) {
            return text;
        }
        text.remove_prefix(space->size());
    }
}

bool startsWithSign(std::string_view text) {
    return text.starts_with('+') || text.starts_with('-');
}

std::size_t countLeading(std::string_view text, std::string_view characters) {
    return std::min(text.find_first_not_of(characters), text.size());
}

/// An unsigned decimal number, taken apart.
struct DecimalNumber {
    std::string_view whole;     ///< the whole number
    std::string_view integer;   ///< the digits before the point
    std::string_view fraction;  ///< the digits after it
    std::string_view exponent;  ///< sign and digits, empty without one
};

std::string_view leadingExponent(std::string_view text) {
    if (!text.starts_with('e') && !text.starts_with('E')) {
        return {};
    }
    text.remove_prefix(1);
    const std::size_t sign = startsWithSign(text) ? 1 : 0;
    const std::size_t length = countLeading(text.substr(sign), digits);
    return length == 0 ? std::string_view{} : text.substr(0, sign + length);
}

std::optional<DecimalNumber> leadingNumber(std::string_view text) {
    DecimalNumber number;
    number.integer = text.substr(0, countLeading(text, digits));
    std::size_t length = number.integer.size();
    if (text.substr(length).starts_with('.')) {
        number.fraction = text.substr(length + 1, countLeading(text.substr(length + 1), digits));
        length += 1 + number.fraction.size();
    }
    if (number.integer.empty() && number.fraction.empty()) {
        return std::nullopt;
    }
    number.exponent = leadingExponent(text.substr(length));
    if (!number.exponent.empty()) {
        length += 1 + number.exponent.size();
    }
    number.whole = text.substr(0, length);
    return number;
}

/// Whether a number outside a float's range is too large, and not too small.
bool isHuge(const DecimalNumber& number) {
    std::string_view exponentText = number.exponent;
    const bool negative = exponentText.starts_with('-');
    exponentText.remove_prefix(startsWithSign(exponentText) ? 1 : 0);
    long long exponent = 0;
    if (std::from_chars(exponentText.data(), exponentText.data() + exponentText.size(), exponent).ec ==
        std::errc::result_out_of_range) {
        return !negative;
    }
    const std::size_t integerZeros = countLeading(number.integer, "0");
    const auto leadingPlace = integerZeros < number.integer.size()
                                  ? static_cast<long long>(number.integer.size() - integerZeros)
                                  : -static_cast<long long>(countLeading(number.fraction, "0"));
    return leadingPlace > (negative ? exponent : -exponent);
}

}  // namespace

bool booleanValue(std::string_view text) {
    text = withoutLeadingWhiteSpace(text);
    text.remove_prefix(startsWithSign(text) ? 1 : 0);
    text.remove_prefix(countLeading(text, "0"));
    return !text.empty() && std::string_view{"YyTt123456789"}.find(text.front()) != std::string_view::npos;
}

float floatValue(std::string_view text) {
    text = withoutLeadingWhiteSpace(text);
    const bool negative = text.starts_with('-');
    text.remove_prefix(startsWithSign(text) ? 1 : 0);
    const std::optional<DecimalNumber> number = leadingNumber(text);
    if (!number) {
        return 0.0F;
    }
    float magnitude = 0.0F;
    const auto [end, error] =
        std::from_chars(number->whole.data(), number->whole.data() + number->whole.size(), magnitude);
    if (error == std::errc::result_out_of_range && isHuge(*number)) {
        magnitude = std::numeric_limits<float>::infinity();
    }
    return negative ? -magnitude : magnitude;
}

}  // namespace velmorindal
