#include "ui/widgets/LegibleStyle.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>
#include <QSlider>
#include <QStyleOption>
#include <algorithm>
#include <array>
#include <utility>

#include "ui/widgets/FocusRing.h"
#include "ui/widgets/Look.h"

namespace velmorindal {

namespace {

constexpr double lineWidth = 1.5;

bool isChecked(const QStyleOption& option) {
    return (option.state & QStyle::State_On) != 0;
}

/// The largest square in the middle of `rect`, inside by half a line.
QRectF squareIn(const QRect& rect) {
    const double side = std::min(rect.width(), rect.height()) - lineWidth;
    QRectF square{0, 0, side, side};
    square.moveCenter(QRectF{rect}.center());
    return square;
}

void setUp(QPainter& painter, const QStyleOption& option) {
    painter.setRenderHint(QPainter::Antialiasing);
    const bool filled = isChecked(option);
    painter.setPen(
        QPen{filled ? look::focusColor(option.palette) : look::outlineColor(option.palette), lineWidth});
    painter.setBrush(filled ? look::accentColor() : option.palette.color(QPalette::Base));
}

void drawRadioMark(const QStyleOption& option, QPainter& painter) {
    setUp(painter, option);
    const QRectF square = squareIn(option.rect);
    painter.drawEllipse(square);
    if (isChecked(option)) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::white);
        painter.drawEllipse(square.center(), square.width() * 0.2, square.width() * 0.2);
    }
}

void drawCheckMark(const QStyleOption& option, QPainter& painter) {
    setUp(painter, option);
    const QRectF square = squareIn(option.rect);
    painter.drawRoundedRect(square, square.width() / 6, square.width() / 6);
    if (isChecked(option)) {
        look::drawTick(painter, square);
    }
}

}  // namespace

void LegibleStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const {
    const bool ringed = widget != nullptr && widget->window()->findChild<FocusRing*>(
                                                 QString{}, Qt::FindDirectChildrenOnly) != nullptr;
    if (element == PE_FrameFocusRect && ringed) {
        return;
    }
    painter->save();
    if (element == PE_IndicatorRadioButton) {
        drawRadioMark(*option, *painter);
    } else if (element == PE_IndicatorCheckBox) {
        drawCheckMark(*option, *painter);
    } else {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
    painter->restore();
}

void LegibleStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                      QPainter* painter, const QWidget* widget) const {
    const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control != CC_Slider || slider == nullptr || slider->orientation != Qt::Horizontal) {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        return;
    }
    painter->save();
    drawSlider(*slider, *painter, widget);
    painter->restore();
}

void LegibleStyle::drawSlider(const QStyleOptionSlider& slider, QPainter& painter,
                              const QWidget* widget) const {
    const QRectF handle = squareIn(subControlRect(CC_Slider, &slider, SC_SliderHandle, widget));
    const double thickness = handle.height() / 4;
    QRectF groove{slider.rect};
    groove.setHeight(thickness);
    groove.moveCenter({groove.center().x(), handle.center().y()});
    QRectF passed = groove;
    passed.setRight(handle.center().x());

    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(look::outlineColor(slider.palette));
    painter.drawRoundedRect(groove, thickness / 2, thickness / 2);
    painter.setBrush(look::accentColor());
    painter.drawRoundedRect(passed, thickness / 2, thickness / 2);
    painter.setPen(QPen{look::outlineColor(slider.palette), lineWidth});
    painter.setBrush(Qt::white);
    painter.drawEllipse(handle);
    painter.setPen(Qt::NoPen);
    painter.setBrush(look::accentColor());
    painter.drawEllipse(handle.center(), thickness, thickness);
}

void LegibleStyle::polish(QPalette& palette) {
    QProxyStyle::polish(palette);
    constexpr std::array texts{std::pair{QPalette::WindowText, QPalette::Window},
                               std::pair{QPalette::Text, QPalette::Base},
                               std::pair{QPalette::ButtonText, QPalette::Button}};
    for (const auto& [text, ground] : texts) {
        palette.setColor(
            QPalette::Disabled, text,
            look::legible(palette.color(QPalette::Disabled, text), palette.color(QPalette::Active, text),
                          palette.color(QPalette::Disabled, ground)));
    }
}

int LegibleStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    const int lineHeight = QFontMetrics{look::bodyFont()}.height();
    switch (metric) {
        case PM_IndicatorWidth:
        case PM_IndicatorHeight:
        case PM_ExclusiveIndicatorWidth:
        case PM_ExclusiveIndicatorHeight:
            return lineHeight;
        case PM_SliderThickness:
        case PM_SliderControlThickness:
        case PM_SliderLength:
            return lineHeight * 5 / 4;
        case PM_FocusFrameHMargin:
        case PM_FocusFrameVMargin:
            // The ring stays within its control: beyond it, the control's row would cut it off.
            return 0;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int LegibleStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* data) const {
    // Below its control, the ring would be hidden by any that paints its whole ground.
    return hint == SH_FocusFrame_AboveWidget ? 1 : QProxyStyle::styleHint(hint, option, widget, data);
}

}  // namespace velmorindal
