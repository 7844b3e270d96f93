#pragma once

namespace velmorindal {

/// The values a slider can take: from `minimum` to `maximum` in whole steps.
///
/// The slider of a toolkit counts positions, 0 to positionCount() - 1, so that rounding errors do not add up.
struct SliderRange {
    double minimum;
    double maximum;
    double step;

    int positionCount() const;

    /// The position nearest to `value`: an end for a value outside the range, the first for a value that is
    /// not a number.
    int nearestPosition(float value) const;

    /// The value at a position; that of the nearer end for a position outside the range.
    float valueAt(int position) const;
};

}  // namespace velmorindal
