#pragma once

#include <string>

namespace velmorindal {

/// A number with two decimals after a point, whatever the locale: "0.50". The settings file and the wizard
/// use it for the thresholds.
std::string twoDecimals(float value);

}  // namespace velmorindal
