#pragma once

#include <optional>

namespace velmorindal {

/// Finds the hums in a series of clarity readings.
///
/// A hum begins when the clarity has risen by a tenth above its lowest since the last hum, and is over when
/// it has fallen to half of its highest. So neither the noise of a room nor a hum's fading tail is one.
class HumDetector {
  public:
    /// @returns the highest clarity of the hum that is over with this reading, if one is.
    std::optional<double> next(double clarity);

  private:
    bool humming_ = false;
    double lowest_ = 0.0;
    double highest_ = 0.0;
};

}  // namespace velmorindal
