#pragma once

#include <optional>

namespace velmorindal {

/// Finds the hums in a series of clarity readings.
///
/// A hum begins when the clarity has risen by a tenth above its lowest since the last hum, and is over when
/// it has fallen halfway from its highest back to that. So neither the noise of a room, however loud, nor a
/// hum's fading tail is one. The first reading only shows how loud the room is.
class HumDetector {
  public:
    /// @returns the highest clarity of the hum that is over with this reading, if one is.
    std::optional<double> next(double clarity);

  private:
    bool humming_ = false;
    std::optional<double> lowest_;
    double highest_ = 0.0;
};

}  // namespace velmorindal
