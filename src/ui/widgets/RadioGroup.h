#pragma once

#include <QButtonGroup>
#include <QRadioButton>
#include <QVBoxLayout>
#include <QWidget>
#include <array>
#include <cstddef>
#include <vector>

#include "session/Published.h"
#include "ui/views/Choice.h"
#include "ui/widgets/Look.h"
#include "ui/widgets/ToQt.h"

namespace velmorindal {

/// A radio group bound to a property of the model: one button a choice, top to bottom.
template <typename Value>
class RadioGroup final : public QWidget {
  public:
    /// `property` must outlive the group.
    template <std::size_t count>
    RadioGroup(const std::array<Choice<Value>, count>& choices, Published<Value>& property)
        : property_{property} {
        auto* column = new QVBoxLayout{this};
        column->setContentsMargins(0, 0, 0, 0);
        column->setSpacing(look::spacing() / 2);
        for (const Choice<Value>& choice : choices) {
            auto* button = new QRadioButton{toQString(choice.label)};
            exclusive_.addButton(button);
            column->addWidget(button, 0, Qt::AlignLeft);
            entries_.push_back({.button = button, .value = choice.value});
            button->setFocusPolicy(Qt::ClickFocus);
            QObject::connect(button, &QRadioButton::toggled, this,
                             [this, button, value = choice.value](bool chosen) {
                                 // The Tab key comes to the chosen entry; from there the arrow keys lead on.
                                 button->setFocusPolicy(chosen ? Qt::StrongFocus : Qt::ClickFocus);
                                 if (chosen && property_.get() != value) {
                                     property_ = value;
                                 }
                             });
        }
        refresh();
    }

    void refresh() {
        for (const Entry& entry : entries_) {
            if (entry.value == property_.get()) {
                entry.button->setChecked(true);
            }
        }
    }

  private:
    struct Entry {
        QRadioButton* button;
        Value value;
    };

    Published<Value>& property_;
    std::vector<Entry> entries_;
    QButtonGroup exclusive_;
};

}  // namespace velmorindal
