#include "session/ChosenSettings.h"

#include "session/VelmorindalSwitch.h"

namespace velmorindal {

ChosenSettings ChosenSettings::of(const VelmorindalSwitch& velmorindal) {
    return {.outputPath = velmorindal.outputPath.get(),
            .outputMode = velmorindal.outputMode.get(),
            .longEnabled = velmorindal.longEnabled.get(),
            .shortEnabled = velmorindal.shortEnabled.get(),
            .outputKeys = velmorindal.outputKeys.get(),
            .clarity = velmorindal.clarity.get(),
            .cutoff = velmorindal.cutoff.get()};
}

void ChosenSettings::applyTo(VelmorindalSwitch& velmorindal) const {
    velmorindal.outputPath = outputPath;
    velmorindal.outputMode = outputMode;
    velmorindal.longEnabled = longEnabled;
    velmorindal.shortEnabled = shortEnabled;
    velmorindal.outputKeys = outputKeys;
    velmorindal.clarity = clarity;
    velmorindal.cutoff = cutoff;
}

}  // namespace velmorindal
