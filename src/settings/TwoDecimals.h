#pragma once

#include <string>

namespace velmorindal {

/// A number with two decimals and a point before them, whatever the locale: "0.50". The settings file holds
/// the thresholds so, and the wizard shows them so.
std::string twoDecimals(float value);

}  // namespace velmorindal
