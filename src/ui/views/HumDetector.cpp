#include "ui/views/HumDetector.h"

#include <algorithm>

namespace velmorindal {

std::optional<double> HumDetector::next(double clarity) {
    constexpr double rise = 0.1;
    if (!humming_) {
        lowest_ = std::min(lowest_, clarity);
        if (clarity >= lowest_ + rise) {
            humming_ = true;
            highest_ = clarity;
        }
        return std::nullopt;
    }
    highest_ = std::max(highest_, clarity);
    if (clarity > highest_ / 2) {
        return std::nullopt;
    }
    humming_ = false;
    lowest_ = clarity;
    return highest_;
}

}  // namespace velmorindal
