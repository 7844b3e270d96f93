#pragma once

#include <string_view>

namespace velmorindal {

/// Conversions that read as much as they can from the start of a UTF-8 text and ignore the rest. They never
/// fail and do not depend on the locale. White space is that of Unicode. Safe from any thread.

/// Whether Y, y, T, t or a digit 1 to 9 follows after white space, an optional sign and zeros.
bool booleanValue(std::string_view text);

/// The longest decimal number that the text begins with after white space: an optional sign, digits, an
/// optional point with digits, and an exponent if it is complete. Infinities, "nan" and hexadecimal numbers
/// are not read.
///
/// @returns the nearest float; 0 when the text does not begin with a number. A number too large for a float
///          gives an infinity of its sign, one too small a zero.
float floatValue(std::string_view text);

}  // namespace velmorindal
