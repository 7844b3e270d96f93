#pragma once

#include "Color.h"

namespace velmorindal {

/// A horizontal bar: what it shows, and how far it is filled.
struct ProgressBar {
    double value;
    /// The value that fills the bar.
    double maxValue;
    /// Whether the empty track is drawn.
    bool backgroundEnabled;
    Color backgroundColor;
    Color foregroundColor;

    /// The width of the fill in a track of `availableWidth`: at most that width, and negative for a negative
    /// value, which is drawn as nothing.
    double fillWidth(double availableWidth) const;

    bool operator==(const ProgressBar&) const = default;
};

}  // namespace velmorindal
