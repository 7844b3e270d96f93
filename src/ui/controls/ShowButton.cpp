#include "ShowButton.h"

#include <QStyleOptionButton>

#include "Look.h"

namespace velmorindal {

void ShowButton::setRunning(bool running) {
    if (running_ != running) {
        running_ = running;
        update();
    }
}

void ShowButton::initStyleOption(QStyleOptionButton* option) const {
    QPushButton::initStyleOption(option);
    if (running_) {
        option->state |= QStyle::State_On;
        // Visible in any palette, also where the style only darkens a pressed button.
        option->palette.setColor(QPalette::Button, look::accentColor());
        option->palette.setColor(QPalette::ButtonText, Qt::white);
    }
}

}  // namespace velmorindal
