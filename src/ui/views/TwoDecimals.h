#pragma once

#include <string>

namespace velmorindal {

/// A number with two decimals and a point before them, whatever the locale: "0.50".
std::string twoDecimals(float value);

}  // namespace velmorindal
