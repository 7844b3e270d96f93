#include "ChoiceGroup.h"

#include "Look.h"

namespace velmorindal {

ChoiceGroup::ChoiceGroup(const QString& question) {
    setAccessibleName(question);
    auto* column = new QVBoxLayout{this};
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(look::spacing() / 2);
}

QRadioButton* ChoiceGroup::add(const QString& label) {
    auto* button = new QRadioButton{label};
    exclusive_.addButton(button);
    layout()->addWidget(button);
    layout()->setAlignment(button, Qt::AlignLeft);
    buttons_.push_back(button);
    connect(button, &QRadioButton::toggled, this, [this] { updateFocusPolicies(); });
    updateFocusPolicies();
    return button;
}

QRadioButton* ChoiceGroup::entry() const {
    auto* const chosen = static_cast<QRadioButton*>(exclusive_.checkedButton());
    return chosen != nullptr ? chosen : buttons_.front();
}

void ChoiceGroup::chooseOnly(std::size_t number) {
    if (number < buttons_.size()) {
        buttons_[number]->setChecked(true);
        return;
    }
    if (QAbstractButton* const chosen = exclusive_.checkedButton()) {
        exclusive_.setExclusive(false);
        chosen->setChecked(false);
        exclusive_.setExclusive(true);
    }
}

void ChoiceGroup::updateFocusPolicies() {
    // The Tab key stops at one entry; the arrow keys lead to the others.
    for (QRadioButton* button : buttons_) {
        button->setFocusPolicy(button == entry() ? Qt::StrongFocus : Qt::ClickFocus);
    }
}

}  // namespace velmorindal
