#include "MessageDialog.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "FocusRing.h"
#include "Look.h"
#include "TextLabel.h"
#include "ToQt.h"

namespace velmorindal {

MessageDialog::MessageDialog(Dialog described, std::function<void(const DialogButton&)> pressed,
                             QWidget* parent)
    : QDialog{parent},
      described_{std::move(described)},
      pressed_{std::move(pressed)},
      heading_{new TextLabel{TextRole::DialogTitle}},
      message_{new TextLabel{TextRole::Body}} {
    const int unit = look::spacing();
    auto* column = new QVBoxLayout{this};
    column->setContentsMargins(3 * unit, 3 * unit, 3 * unit, 2 * unit);
    column->setSpacing(unit);
    column->setSizeConstraint(QLayout::SetFixedSize);
    for (TextLabel* label : {heading_, message_}) {
        label->setFixedWidth(look::narrowestLineWidth());
        column->addWidget(label);
    }
    column->addSpacing(unit);
    addButtons();
    showTexts(described_);
    new FocusRing{this};
}

void MessageDialog::addButtons() {
    auto* row = new QHBoxLayout;
    row->setSpacing(look::spacing());
    row->addStretch();
    for (const DialogButton& button : described_.buttons) {
        auto* control = new QPushButton{toQString(button.label)};
        const bool goesAhead = button.role == DialogRole::destructive;
        control->setAutoDefault(true);
        control->setDefault(!goesAhead);
        control->setShortcut(Qt::ALT | static_cast<Qt::Key>(control->text().at(0).unicode()));
        connect(control, &QPushButton::clicked, this, [this, &button] { end(button); });
        row->addWidget(control);
    }
    static_cast<QVBoxLayout*>(layout())->addLayout(row);
}

void MessageDialog::showTexts(const Dialog& described) {
    setWindowTitle(toQString(described.title));
    heading_->showText(described.title);
    message_->showText(described.message);
}

void MessageDialog::withdraw() {
    pressed_ = nullptr;
    done(Rejected);
}

void MessageDialog::reject() {
    const auto declining = std::ranges::find_if(described_.buttons, [](const DialogButton& button) {
        return button.role != DialogRole::destructive;
    });
    if (declining != described_.buttons.end()) {
        end(*declining);
    }
}

void MessageDialog::end(const DialogButton& button) {
    // Hiding it may bring one more press of Escape here.
    const auto pressed = std::exchange(pressed_, nullptr);
    done(button.role == DialogRole::destructive ? Accepted : Rejected);
    if (pressed) {
        pressed(button);
    }
}

}  // namespace velmorindal
