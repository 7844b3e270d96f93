#pragma once

#include <array>
#include <string_view>
#include <vector>

#include "Choice.h"
#include "ModelTypes.h"
#include "VelmorindalSwitch.h"

namespace velmorindal {

/// The fourth page: where hums go, and which keys they send. Main thread only.
class OutputPanelView {
  public:
    /// A pop-up list of keys and the member of the model's `outputKeys` that it is bound to.
    struct KeyChoice {
        std::string_view label;
        OutputKey keyList::*key;

        bool operator==(const KeyChoice&) const = default;
    };

    explicit OutputPanelView(VelmorindalSwitch& model);

    VelmorindalSwitch& velmorindal;

    static constexpr std::string_view question = "What output would you like the Velmorindal to trigger?";
    /// The radio group bound to the model's `outputPath`.
    static constexpr std::array<Choice<OutputPath>, 3> pathChoices{{
        {.label = "Switch Output", .value = OutputPath::Switch},
        {.label = "USB Keyboard", .value = OutputPath::USBKeyboard},
        {.label = "Bluetooth Keyboard", .value = OutputPath::BTKeyboard},
    }};
    static constexpr KeyChoice directKeyChoice{.label = "Keystroke", .key = &keyList::directKey};
    static constexpr KeyChoice shortKeyChoice{.label = "Short hum keystroke", .key = &keyList::shortKey};
    static constexpr KeyChoice longKeyChoice{.label = "Long hum keystroke", .key = &keyList::longKey};
    /// All of them: a control is created for each, and shown while keyChoices() has it.
    static constexpr std::array allKeyChoices{directKeyChoice, shortKeyChoice, longKeyChoice};

    /// The key choices that are shown now, top to bottom. A hidden one keeps its key.
    std::vector<KeyChoice> keyChoices() const;

    /// The entries of every key choice, in order.
    static std::vector<Choice<OutputKey>> keyEntries();

    /// Read and set the key of a choice in the model.
    OutputKey chosenKey(const KeyChoice& choice) const;
    void chooseKey(const KeyChoice& choice, OutputKey key);
};

}  // namespace velmorindal
