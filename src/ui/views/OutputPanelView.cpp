#include "OutputPanelView.h"

namespace velmorindal {

OutputPanelView::OutputPanelView(VelmorindalSwitch& model) : velmorindal{model} {}

std::vector<OutputPanelView::KeyChoice> OutputPanelView::keyChoices() const {
    if (velmorindal.outputPath.get() == OutputPath::Switch) {
        return {};
    }
    if (velmorindal.outputMode.get() == OutputMode::Direct) {
        return {directKeyChoice};
    }
    std::vector<KeyChoice> choices;
    if (velmorindal.shortEnabled.get()) {
        choices.push_back(shortKeyChoice);
    }
    if (velmorindal.longEnabled.get()) {
        choices.push_back(longKeyChoice);
    }
    return choices;
}

std::vector<Choice<OutputKey>> OutputPanelView::keyEntries() {
    std::vector<Choice<OutputKey>> entries;
    for (const OutputKey key : VelmorindalSwitch::keyDisplayOrder()) {
        entries.push_back({.label = VelmorindalSwitch::keyDisplayStrings().at(key), .value = key});
    }
    return entries;
}

OutputKey OutputPanelView::chosenKey(const KeyChoice& choice) const {
    const keyList keys = velmorindal.outputKeys.get();
    return keys.*choice.key;
}

void OutputPanelView::chooseKey(const KeyChoice& choice, OutputKey key) {
    keyList keys = velmorindal.outputKeys.get();
    keys.*choice.key = key;
    velmorindal.outputKeys = keys;
}

}  // namespace velmorindal
