#include "IndicatorWidget.h"

#include <QPainter>

#include "Look.h"
#include "ToQt.h"

namespace velmorindal {

IndicatorWidget::IndicatorWidget(const CalibrationPanelView::Indicator& indicator)
    : lit_{indicator.lit}, color_{toQColor(indicator.color())} {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleName(toQString(indicator.accessibleName));
    setIndicator(indicator);
}

void IndicatorWidget::setIndicator(const CalibrationPanelView::Indicator& indicator) {
    const QString description = toQString(indicator.description);
    if (accessibleDescription() != description) {
        setAccessibleDescription(description);
    }
    const QColor color = toQColor(indicator.color());
    if (lit_ != indicator.lit || muted_ != indicator.muted || color_ != color) {
        muted_ = indicator.muted;
        lit_ = indicator.lit;
        color_ = color;
        update();
    }
}

QSize IndicatorWidget::sizeHint() const {
    // One pixel around the circle for its smooth edge.
    constexpr int side = CalibrationPanelView::Indicator::diameter + 2;
    return {side, side};
}

void IndicatorWidget::paintEvent(QPaintEvent* /*event*/) {
    constexpr double radius = CalibrationPanelView::Indicator::diameter / 2.0;
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(QRectF{rect()}.center());
    painter.setPen(Qt::NoPen);
    painter.setBrush(color_);
    painter.drawEllipse(QPointF{}, radius, radius);
    if (muted_) {
        // Drawn as a ring while it is not live.
        painter.setBrush(palette().color(QPalette::Window));
        painter.drawEllipse(QPointF{}, radius - 3, radius - 3);
        return;
    }
    if (lit_) {
        look::drawTick(painter, {-radius, -radius, 2 * radius, 2 * radius});
    }
}

}  // namespace velmorindal
