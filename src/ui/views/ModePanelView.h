#pragma once

#include <array>
#include <string_view>

#include "ButtonOptions.h"
#include "Choice.h"
#include "ModelTypes.h"
#include "Published.h"
#include "VelmorindalSwitch.h"

namespace velmorindal {

/// The third page: one output, or two selected by the length of the hum. Main thread only.
class ModePanelView {
  public:
    struct Explanation {
        std::string_view label;
        std::string_view text;
    };

    /// A check box and the flag of the model that it is bound to.
    struct CheckBox {
        std::string_view label;
        Published<bool> VelmorindalSwitch::*flag;
    };

    explicit ModePanelView(VelmorindalSwitch& model);

    VelmorindalSwitch& velmorindal;

    static constexpr std::string_view introduction = "The Velmorindal can operate in two modes:";
    static constexpr std::array<Explanation, 2> explanations{{
        {.label = "Direct Mode: ", .text = "control one output with a hum"},
        {.label = "Long/Short Mode:", .text = "control two outputs with a short hum or a long hum"},
    }};
    static constexpr std::string_view question = "Which mode would you like?";
    /// The radio group bound to the model's `outputMode`.
    static constexpr std::array<Choice<OutputMode>, 2> modeChoices{{
        {.label = "Direct Mode", .value = OutputMode::Direct},
        {.label = "Long/Short Mode", .value = OutputMode::LongShort},
    }};
    static constexpr std::array<CheckBox, 2> checkBoxes{{
        {.label = "Enable short output", .flag = &VelmorindalSwitch::shortEnabled},
        {.label = "Enable long output", .flag = &VelmorindalSwitch::longEnabled},
    }};

    /// Whether `checkBoxes` are shown.
    bool showsCheckBoxes() const;

    /// The navigation buttons of this page: no Next while long/short mode has neither output enabled.
    static ButtonOptions buttons(const VelmorindalSwitch& velmorindal);
};

}  // namespace velmorindal
