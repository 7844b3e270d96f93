#include "SliderRange.h"

#include <algorithm>
#include <cmath>

namespace velmorindal {

int SliderRange::positionCount() const {
    return static_cast<int>(std::lround((maximum - minimum) / step)) + 1;
}

int SliderRange::nearestPosition(float value) const {
    // The ends first: values far outside, and infinities, must not be converted to an integer.
    const double exact = value;
    if (std::isnan(exact) || exact <= minimum) {
        return 0;
    }
    if (exact >= maximum) {
        return positionCount() - 1;
    }
    return static_cast<int>(std::lround((exact - minimum) / step));
}

float SliderRange::valueAt(int position) const {
    const int reachable = std::clamp(position, 0, positionCount() - 1);
    return static_cast<float>(minimum + reachable * step);
}

}  // namespace velmorindal
