#include "ui/widgets/ShowButton.h"

#include <QStyleOptionButton>

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
    }
}

}  // namespace velmorindal
