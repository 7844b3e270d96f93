#include "ProgressBarWidget.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>
#include <algorithm>
#include <cmath>

#include "Look.h"
#include "ToQt.h"

namespace velmorindal {

namespace {

constexpr int glideMilliseconds = 150;

QPainterPath capsule(const QRectF& rect) {
    const double radius = std::min(rect.width(), rect.height()) / 2.0;
    QPainterPath path;
    path.addRoundedRect(rect, radius, radius);
    return path;
}

double partOfTrack(const ProgressBar& bar) {
    // A reading that is not a number fills nothing.
    const double fraction = bar.fillWidth(1.0);
    return std::isnan(fraction) ? 0.0 : std::clamp(fraction, 0.0, 1.0);
}

}  // namespace

ProgressBarWidget::ProgressBarWidget(const QString& accessibleName, QWidget* parent) : QWidget{parent} {
    setAccessibleName(accessibleName);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    glide_.setDuration(glideMilliseconds);
    glide_.setEasingCurve(QEasingCurve::OutCubic);
    connect(&glide_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        shownFraction_ = value.toDouble();
        update();
    });
}

void ProgressBarWidget::setBar(const ProgressBar& bar, double trace) {
    if (bar == bar_ && trace == trace_) {
        return;
    }
    trace_ = trace;
    const double oldTarget = targetFraction();
    bar_ = bar;
    if (targetFraction() != oldTarget) {
        glideTo(targetFraction());
    }
    update();
}

double ProgressBarWidget::spokenValue() const {
    return std::round(targetFraction() * bar_.maxValue * 100.0) / 100.0;
}

double ProgressBarWidget::targetFraction() const {
    return partOfTrack(bar_);
}

double ProgressBarWidget::traceFraction() const {
    ProgressBar trace = bar_;
    trace.value = trace_;
    return partOfTrack(trace);
}

void ProgressBarWidget::glideTo(double fraction) {
    const bool animated = style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0;
    if (!isVisible() || !animated) {
        glide_.stop();
        shownFraction_ = fraction;
        return;
    }
    // Values can arrive faster than frames. A glide that is restarted for each value would never move, so one
    // that has not shown its first frame yet only gets a new end.
    const bool awaitsFirstFrame = glide_.state() == QAbstractAnimation::Running && glide_.currentTime() == 0;
    if (!awaitsFirstFrame) {
        glide_.stop();
        glide_.setStartValue(shownFraction_);
    }
    glide_.setEndValue(fraction);
    if (!awaitsFirstFrame) {
        glide_.start();
    }
}

QSize ProgressBarWidget::sizeHint() const {
    return {look::narrowestLineWidth() / 2, QFontMetrics{look::bodyFont()}.height() * 3 / 4};
}

QSize ProgressBarWidget::minimumSizeHint() const {
    return {sizeHint().height() * 2, sizeHint().height()};
}

void ProgressBarWidget::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    // Half a pixel smaller on each side, so that the outline stays inside.
    const QRectF bounds = QRectF{rect()}.adjusted(0.5, 0.5, -0.5, -0.5);
    const QPainterPath track = capsule(bounds);
    if (bar_.backgroundEnabled) {
        painter.fillPath(track, toQColor(bar_.backgroundColor));
    }
    const auto fill = [&](double fraction, const QColor& color) {
        QRectF filled = bounds;
        filled.setWidth(bounds.width() * fraction);
        if (filled.width() > 0.0) {
            // Clipped, since a fill narrower than the bar is high would extend past the track's rounded end.
            painter.fillPath(capsule(filled).intersected(track), color);
        }
    };
    const QColor color = toQColor(bar_.foregroundColor);
    fill(traceFraction(), look::paler(color));
    fill(shownFraction_, color);
    if (bar_.backgroundEnabled) {
        painter.strokePath(track, QPen{look::outlineColor(palette()), 1.0});
    }
}

}  // namespace velmorindal
