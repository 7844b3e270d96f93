#include "HumDetector.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace velmorindal {

std::optional<double> HumDetector::next(double reading) {
    constexpr double rise = 0.1;
    if (!std::isfinite(reading)) {
        return std::nullopt;
    }
    const double clarity = std::max(reading, 0.0);
    if (!humming_) {
        lowest_ = std::min(lowest_.value_or(clarity), clarity);
        if (clarity >= *lowest_ + rise) {
            humming_ = true;
            highest_ = clarity;
        }
        return std::nullopt;
    }
    highest_ = std::max(highest_, clarity);
    if (clarity > std::midpoint(*lowest_, highest_)) {
        return std::nullopt;
    }
    humming_ = false;
    lowest_ = clarity;
    return highest_;
}

}  // namespace velmorindal
