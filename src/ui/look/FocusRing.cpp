#include "FocusRing.h"

#include <QApplication>
#include <QPainter>

#include "Look.h"

namespace velmorindal {

FocusRing::FocusRing(QWidget* window) : QFocusFrame{window}, window_{window} {
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget* /*before*/, QWidget* focused) { follow(focused); });
}

void FocusRing::follow(QWidget* focused) {
    // A pop-up list has a window of its own and shows its current entry itself.
    const bool mine = focused != nullptr && focused != window_ && focused->window() == window_;
    setWidget(mine ? focused : nullptr);
}

void FocusRing::paintEvent(QPaintEvent* /*event*/) {
    constexpr double width = 2.0;
    constexpr double inset = width / 2;
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen{look::focusColor(palette()), width});
    painter.drawRoundedRect(QRectF{rect()}.adjusted(inset, inset, -inset, -inset), 4.0, 4.0);
}

}  // namespace velmorindal
