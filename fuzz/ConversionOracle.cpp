#include "ConversionOracle.h"

#include <locale.h>  // NOLINT(modernize-deprecated-headers): only this header has newlocale

#include <array>
#include <cstdio>
#include <cstdlib>

#include "Requirement.h"

namespace velmorindal::oracle {
namespace {

/// A character and its length in bytes. A byte that starts no valid character counts as one.
struct Character {
    unsigned scalar;
    std::size_t length;
};

unsigned byteAt(const std::string& text, std::size_t index) {
    return index < text.size() ? static_cast<unsigned char>(text[index]) : 0;
}

bool isContinuation(unsigned byte) {
    return byte >= 0x80 && byte <= 0xBF;
}

Character characterAt(const std::string& text, std::size_t start) {
    const unsigned first = byteAt(text, start);
    const unsigned second = byteAt(text, start + 1);
    const unsigned third = byteAt(text, start + 2);
    if (first >= 0xC2 && first <= 0xDF && isContinuation(second)) {
        return {(first - 0xC0) * 64 + second - 0x80, 2};
    }
    if (first >= 0xE1 && first <= 0xEC && isContinuation(second) && isContinuation(third)) {
        return {((first - 0xE0) * 64 + second - 0x80) * 64 + third - 0x80, 3};
    }
    return {first < 0x80 ? first : 0xFFFD, 1};
}

bool isWhiteSpace(unsigned scalar) {
    return (scalar >= 0x09 && scalar <= 0x0D) || scalar == 0x20 || scalar == 0x85 || scalar == 0xA0 ||
           scalar == 0x1680 || (scalar >= 0x2000 && scalar <= 0x200A) || scalar == 0x2028 ||
           scalar == 0x2029 || scalar == 0x202F || scalar == 0x205F || scalar == 0x3000;
}

std::size_t afterWhiteSpace(const std::string& text) {
    std::size_t position = 0;
    while (position < text.size() && isWhiteSpace(characterAt(text, position).scalar)) {
        position += characterAt(text, position).length;
    }
    return position;
}

bool isDigit(unsigned byte) {
    return byte >= '0' && byte <= '9';
}

bool isSign(unsigned byte) {
    return byte == '+' || byte == '-';
}

/// Whether the whole text is a number. floatValue() tries each length of a text and keeps the longest number.
bool isNumber(const std::string& text) {
    std::size_t position = isSign(byteAt(text, 0)) ? 1 : 0;
    const auto digits = [&] {
        const std::size_t start = position;
        while (isDigit(byteAt(text, position))) {
            ++position;
        }
        return position - start;
    };
    std::size_t count = digits();
    if (byteAt(text, position) == '.') {
        ++position;
        count += digits();
    }
    if (count == 0) {
        return false;
    }
    if (byteAt(text, position) == 'e' || byteAt(text, position) == 'E') {
        ++position;
        position += isSign(byteAt(text, position)) ? 1 : 0;
        if (digits() == 0) {
            return false;
        }
    }
    return position == text.size();
}

locale_t plainLocale() {
    static const locale_t locale = ::newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

}  // namespace

bool booleanValue(const std::string& text) {
    std::size_t position = afterWhiteSpace(text);
    position += isSign(byteAt(text, position)) ? 1 : 0;
    while (byteAt(text, position) == '0') {
        ++position;
    }
    switch (byteAt(text, position)) {
        case 'y':
        case 'Y':
        case 't':
        case 'T':
            return true;
        default:
            return isDigit(byteAt(text, position));
    }
}

float floatValue(const std::string& text) {
    const std::string rest = text.substr(afterWhiteSpace(text));
    std::string longest;
    for (std::size_t length = 1; length <= rest.size(); ++length) {
        if (isNumber(rest.substr(0, length))) {
            longest = rest.substr(0, length);
        }
    }
    return longest.empty() ? 0.0F : ::strtof_l(longest.c_str(), nullptr, plainLocale());
}

std::string twoDecimals(float value) {
    const locale_t before = ::uselocale(plainLocale());
    std::array<char, 64> text{};
    const int length = std::snprintf(text.data(), text.size(), "%.2f", static_cast<double>(value));
    ::uselocale(before);
    require(length > 0 && static_cast<std::size_t>(length) < text.size(), "two decimals have room");
    return text.data();
}

}  // namespace velmorindal::oracle
