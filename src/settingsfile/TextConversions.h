#pragma once

#include <string_view>

namespace velmorindal {

/// Conversions that take what they can from the start of a UTF-8 text and ignore the rest. They never fail
/// and never look at the locale. White space is whatever Unicode counts as such.

/// Whether the text, after white space, an optional sign and zeros, goes on with Y, y, T, t or a digit 1 to
/// 9.
bool booleanValue(std::string_view text);

/// The longest decimal number that the text begins with after white space: an optional sign, digits, an
/// optional point with digits, and an exponent if it is complete. There are no infinities, no "nan" and no
/// hexadecimal.
///
/// @returns the nearest float; 0 when the text does not begin with a number. A number too large for a float
///          gives an infinity of its sign, one too small a zero.
float floatValue(std::string_view text);

}  // namespace velmorindal
