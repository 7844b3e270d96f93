#pragma once

#include <string>

/// Independent versions of the conversions between text and number: character by character, or by the C
/// library in its "C" locale.
namespace velmorindal::oracle {

/// As the functions in TextConversions.h.
bool booleanValue(const std::string& text);

float floatValue(const std::string& text);

/// As printf with "%.2f".
std::string twoDecimals(float value);

}  // namespace velmorindal::oracle
