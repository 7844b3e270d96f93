#pragma once

#include "ModelTypes.h"

namespace velmorindal {

/// The settings that a user chooses and a settings file holds, as values.
struct ChosenSettings {
    OutputPath outputPath;
    OutputMode outputMode;
    bool longEnabled;
    bool shortEnabled;
    keyList outputKeys;
    /// The clarity threshold of a hum, 0 to 1.
    float clarity;
    /// Seconds.
    float cutoff;
};

}  // namespace velmorindal
