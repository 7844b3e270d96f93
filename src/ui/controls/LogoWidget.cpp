#include "LogoWidget.h"

#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

#include "LogoPicture.h"
#include "Look.h"
#include "ToQt.h"
#include "WelcomePanelView.h"

namespace velmorindal {

namespace {

constexpr const WelcomePanelView::Logo& logo = WelcomePanelView::logo;
constexpr int shadowWidth = 4;

/// The picture grows with the text beside it.
int pictureSize() {
    return look::spacing() * 9;
}

void paintShadow(QPainter& painter, const QPointF& center, double radius) {
    QRadialGradient shadow{center, radius + shadowWidth};
    QColor faint = toQColor(logo.shadowColor);
    faint.setAlphaF(static_cast<float>(logo.shadowOpacity));
    QColor none = faint;
    none.setAlphaF(0.0F);
    shadow.setColorAt(radius / (radius + shadowWidth), faint);
    shadow.setColorAt(1.0, none);
    painter.setPen(Qt::NoPen);
    painter.setBrush(shadow);
    painter.drawEllipse(center, radius + shadowWidth, radius + shadowWidth);
}

}  // namespace

LogoWidget::LogoWidget() {
    setAccessibleName(toQString(logo.resourceName));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize LogoWidget::sizeHint() const {
    const int side = pictureSize() + 2 * logo.padding + logo.outlineWidth + 2 * shadowWidth;
    return {side, side};
}

void LogoWidget::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF center = QRectF{rect()}.center();
    const double radius = pictureSize() / 2.0 + logo.padding;
    paintShadow(painter, center, radius + logo.outlineWidth / 2.0);

    const int side = pictureSize();
    QPainterPath circle;
    circle.addEllipse(center, radius, radius);
    painter.save();
    painter.setClipPath(circle);
    painter.fillPath(circle, palette().color(QPalette::Window));
    // Drawn from its vectors at the screen's resolution.
    paintLogoPicture(painter, QRect{static_cast<int>(center.x()) - side / 2,
                                    static_cast<int>(center.y()) - side / 2, side, side});
    painter.restore();

    painter.setPen(QPen{toQColor(logo.outlineColor), static_cast<double>(logo.outlineWidth)});
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(center, radius, radius);
}

}  // namespace velmorindal
