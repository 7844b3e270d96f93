#pragma once

#include <optional>

namespace velmorindal {

/// Finds the hums in a series of clarity readings.
///
/// A hum begins when the clarity is 0.1 above its lowest value since the last hum, and ends when it has
/// fallen half of the way from its highest value back to that. So neither steady noise, however loud, nor the
/// end of a hum counts as one. The first reading only sets the lowest value.
class HumDetector {
  public:
    /// Takes the next reading, 0 to 1. Ignores one that is not finite, and takes one below 0 for 0.
    /// @returns the highest clarity of the hum that ends with it, if one does.
    std::optional<double> next(double reading);

  private:
    bool humming_ = false;
    std::optional<double> lowest_;
    double highest_ = 0.0;
};

}  // namespace velmorindal
