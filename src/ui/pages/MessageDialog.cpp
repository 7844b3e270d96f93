#include "MessageDialog.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "FocusRing.h"
#include "FocusScroller.h"
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
    // A tenth of the screen is left to the desktop's bars and the frame.
    const QSize room = screen()->availableSize() * 9 / 10;
    auto* column = new QVBoxLayout{this};
    column->setContentsMargins(3 * unit, 3 * unit, 3 * unit, 2 * unit);
    column->setSpacing(unit);
    column->setSizeConstraint(QLayout::SetFixedSize);
    column->addWidget(heading_);
    column->addWidget(message_);
    column->addSpacing(unit);
    addButtons();
    // The labels need a fixed width, from which their heights follow.
    const int buttons = column->itemAt(column->count() - 1)->minimumSize().width();
    const int width = std::max(buttons, std::min(look::narrowestLineWidth(), room.width() - 6 * unit));
    heading_->setFixedWidth(width);
    message_->setFixedWidth(width);
    showTexts(described_);
    if (column->totalSizeHint().height() > room.height()) {
        scrollTexts(room.height());
    }
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

void MessageDialog::scrollTexts(int height) {
    auto* column = static_cast<QVBoxLayout*>(layout());
    auto* texts = new QWidget;
    auto* lines = new QVBoxLayout{texts};
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(column->spacing());
    auto* scroller = new FocusScroller{texts, windowTitle()};
    const int width = heading_->width();
    for (TextLabel* label : {heading_, message_}) {
        column->removeWidget(label);
        label->setFixedWidth(width - style()->pixelMetric(QStyle::PM_ScrollBarExtent));
        lines->addWidget(label);
    }
    column->insertWidget(0, scroller);
    scroller->setFixedSize(width, 0);
    scroller->setFixedHeight(height - column->totalSizeHint().height());
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
    // Hiding the dialog may deliver another press of Escape.
    const auto pressed = std::exchange(pressed_, nullptr);
    done(button.role == DialogRole::destructive ? Accepted : Rejected);
    if (pressed) {
        pressed(button);
    }
}

}  // namespace velmorindal
