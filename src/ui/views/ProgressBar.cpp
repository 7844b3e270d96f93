#include "ProgressBar.h"

#include <algorithm>

namespace velmorindal {

double ProgressBar::fillWidth(double availableWidth) const {
    return std::min(value / maxValue, 1.0) * availableWidth;
}

}  // namespace velmorindal
