#include "LegibleStyle.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QSlider>
#include <QStyleOption>
#include <algorithm>
#include <array>
#include <utility>

#include "FocusRing.h"
#include "Look.h"

namespace velmorindal {

namespace {

constexpr double lineWidth = 1.5;
/// The property that marks a button that leads from page to page.
constexpr auto leadingMark = "leading";

bool isChecked(const QStyleOption& option) {
    return (option.state & QStyle::State_On) != 0;
}

/// The largest square in the middle of `rect` whose outline stays inside.
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

void drawFrame(const QStyleOption& option, QPainter& painter) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen{look::outlineColor(option.palette), 1.0});
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF{option.rect}.adjusted(0.5, 0.5, -0.5, -0.5), 2.0, 2.0);
}

/// The text with the mark that underlines the letter of the button's shortcut. The text of the button has no
/// mark, since it is also its accessible name.
QString withAccessKey(const QPushButton& button, const QString& text) {
    const QKeySequence shortcut = button.shortcut();
    if (shortcut.isEmpty() || !QKeySequence::mnemonic(text).isEmpty()) {
        return text;
    }
    const qsizetype at = text.indexOf(shortcut.toString().right(1), 0, Qt::CaseInsensitive);
    return at < 0 ? text : text.left(at) + u'&' + text.mid(at);
}

bool isFlat(const QStyleOptionButton& button) {
    return (button.features & QStyleOptionButton::Flat) != 0;
}

bool hasPlainText(const QStyleOptionButton& button) {
    return button.icon.isNull() && (button.features & QStyleOptionButton::HasMenu) == 0;
}

/// How much wider than its text a control has to be, for its mark and the space between them.
int besideText(const QStyle& style, QStyle::SubElement text, const QStyleOption* option,
               const QWidget* widget) {
    const auto* given = qstyleoption_cast<const QStyleOptionButton*>(option);
    QStyleOptionButton wide = given != nullptr ? *given : QStyleOptionButton{};
    constexpr int width = 1000;
    wide.rect = QRect{0, 0, width, look::targetHeight()};
    return width - style.subElementRect(text, &wide, widget).width();
}

}  // namespace

void LegibleStyle::markAsLeading(QPushButton& button) {
    button.setProperty(leadingMark, true);
}

void LegibleStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
    const auto* pushed = qobject_cast<const QPushButton*>(widget);
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    if (element == CE_PushButtonLabel && pushed != nullptr && button != nullptr && hasPlainText(*button)) {
        // The palette has the colour of a disabled text; the toolkit would add a shadow to it.
        constexpr bool withoutShadow = true;
        // Not by the desktop's style: some show the letter only while Alt is down.
        // NOLINTNEXTLINE(bugprone-parent-virtual-call)
        QStyle::drawItemText(painter, button->rect, Qt::AlignCenter | Qt::TextShowMnemonic, button->palette,
                             withoutShadow, withAccessKey(*pushed, button->text), QPalette::ButtonText);
        return;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
    if (element == CE_PushButtonBevel && button != nullptr && !isFlat(*button)) {
        painter->save();
        drawFrame(*option, *painter);
        painter->restore();
    }
}

QSize LegibleStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                                     const QWidget* widget) const {
    QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    switch (type) {
        case CT_PushButton: {
            const bool leads = widget != nullptr && widget->property(leadingMark).toBool();
            const QSize least{contents.width() + 4 * look::spacing(),
                              leads ? look::navigationHeight() : look::targetHeight()};
            return size.expandedTo(least);
        }
        case CT_RadioButton:
        case CT_CheckBox: {
            const SubElement text = type == CT_CheckBox ? SE_CheckBoxContents : SE_RadioButtonContents;
            return size.expandedTo(
                {contents.width() + besideText(*this, text, option, widget), look::targetHeight()});
        }
        case CT_ComboBox:
        case CT_Slider:
            return size.expandedTo({0, look::targetHeight()});
        default:
            return size;
    }
}

void LegibleStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const {
    // findChild() searches all levels: the ring is a child of the page, not of the window, while it surrounds
    // a control there.
    if (element == PE_FrameFocusRect && widget != nullptr &&
        widget->window()->findChild<FocusRing*>() != nullptr) {
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
        if (control == CC_ComboBox) {
            painter->save();
            drawFrame(*option, *painter);
            painter->restore();
        }
        return;
    }
    painter->save();
    drawSlider(*slider, *painter, widget);
    painter->restore();
}

void LegibleStyle::drawSlider(const QStyleOptionSlider& slider, QPainter& painter,
                              const QWidget* widget) const {
    QRectF handle = squareIn(subControlRect(CC_Slider, &slider, SC_SliderHandle, widget));
    handle.moveCenter({handle.center().x(), QRectF{slider.rect}.center().y()});
    const QRectF groove = look::sliderGroove(slider.rect, pixelMetric(PM_SliderLength, &slider, widget));
    const double thickness = groove.height();
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
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int LegibleStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* data) const {
    return hint == SH_UnderlineShortcut ? 1 : QProxyStyle::styleHint(hint, option, widget, data);
}

}  // namespace velmorindal
