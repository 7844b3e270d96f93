#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

#include "Choice.h"
#include "ChoiceGroup.h"
#include "Published.h"
#include "ToQt.h"

namespace velmorindal {

/// A radio group bound to a property of the model: one button for each choice, top to bottom. While the
/// property has a value without a button, none is chosen.
template <typename Value>
class RadioGroup final : public ChoiceGroup {
  public:
    /// `property` must outlive the group.
    template <std::size_t count>
    RadioGroup(std::string_view question, const std::array<Choice<Value>, count>& choices,
               Published<Value>& property)
        : ChoiceGroup{toQString(question)}, property_{property} {
        for (const Choice<Value>& choice : choices) {
            values_.push_back(choice.value);
            QObject::connect(add(toQString(choice.label)), &QRadioButton::toggled, this,
                             [this, value = choice.value](bool chosen) {
                                 if (chosen && property_.get() != value) {
                                     property_ = value;
                                 }
                             });
        }
        refresh();
    }

    /// Shows the value that the property has now.
    void refresh() {
        const auto chosen = std::ranges::find(values_, property_.get());
        chooseOnly(static_cast<std::size_t>(chosen - values_.begin()));
    }

  private:
    Published<Value>& property_;
    std::vector<Value> values_;
};

}  // namespace velmorindal
