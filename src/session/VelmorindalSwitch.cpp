#include "VelmorindalSwitch.h"

#include <utility>

#include "KeyTables.h"

namespace velmorindal {

VelmorindalSwitch::VelmorindalSwitch(Dispatch& dispatch, System& system, DongleSearch search)
    : dispatch_{dispatch}, system_{system}, search_{std::move(search)} {}

VelmorindalSwitch::~VelmorindalSwitch() = default;

const std::map<OutputKey, std::string>& VelmorindalSwitch::keyDisplayStrings() {
    return velmorindal::keyDisplayStrings();
}

const std::vector<OutputKey>& VelmorindalSwitch::keyDisplayOrder() {
    return velmorindal::keyDisplayOrder();
}

const std::map<OutputKey, std::uint32_t>& VelmorindalSwitch::keyCodes() {
    return velmorindal::keyCodes();
}

std::vector<OutputKey> VelmorindalSwitch::keysWithCode(std::uint32_t code) {
    return velmorindal::keysWithCode(code);
}

ChosenSettings VelmorindalSwitch::chosenSettings() const {
    return {.outputPath = outputPath.get(),
            .outputMode = outputMode.get(),
            .longEnabled = longEnabled.get(),
            .shortEnabled = shortEnabled.get(),
            .outputKeys = outputKeys.get(),
            .clarity = clarity.get(),
            .cutoff = cutoff.get()};
}

void VelmorindalSwitch::choose(const ChosenSettings& settings) {
    outputPath = settings.outputPath;
    outputMode = settings.outputMode;
    longEnabled = settings.longEnabled;
    shortEnabled = settings.shortEnabled;
    outputKeys = settings.outputKeys;
    clarity = settings.clarity;
    cutoff = settings.cutoff;
}

OperationResult VelmorindalSwitch::failure(std::optional<std::string> text) {
    lastError = text;
    return {.succeeded = false, .text = std::move(text)};
}

}  // namespace velmorindal
