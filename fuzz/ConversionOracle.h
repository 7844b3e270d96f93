#pragma once

#include <string>

/// The conversions between text and number written a second time, character by character or by way of the C
/// library in its plain locale.
namespace velmorindal::oracle {

bool booleanValue(const std::string& text);

float floatValue(const std::string& text);

/// "%.2f".
std::string twoDecimals(float value);

}  // namespace velmorindal::oracle
