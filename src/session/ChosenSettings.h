#pragma once

#include "session/ModelTypes.h"

namespace velmorindal {

class VelmorindalSwitch;

/// The settings that a user chooses and a settings file holds, as values.
struct ChosenSettings {
    OutputPath outputPath;
    OutputMode outputMode;
    bool longEnabled;
    bool shortEnabled;
    keyList outputKeys;
    float clarity;
    float cutoff;

    /// What the model holds now. Main thread.
    static ChosenSettings of(const VelmorindalSwitch& velmorindal);

    /// Sets the model to it, one published change each. Main thread.
    void applyTo(VelmorindalSwitch& velmorindal) const;
};

}  // namespace velmorindal
