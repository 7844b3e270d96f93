#include "Look.h"

#include <QApplication>
#include <QFontMetrics>
#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>

#include "ToQt.h"

namespace velmorindal::look {

namespace {

QFont scaled(double factor, QFont::Weight weight) {
    QFont font = QApplication::font();
    if (font.pointSizeF() > 0) {
        font.setPointSizeF(font.pointSizeF() * factor);
    } else {
        font.setPixelSize(static_cast<int>(std::lround(font.pixelSize() * factor)));
    }
    font.setWeight(weight);
    return font;
}

int bodyCharacters(int count) {
    return QFontMetrics{bodyFont()}.averageCharWidth() * count;
}

/// The relative luminance of a colour in sRGB, 0 for black to 1 for white.
double luminance(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// `wanted` if it stands out from the page, otherwise `otherwise`.
QColor firstVisible(const QPalette& palette, const QColor& wanted, const QColor& otherwise) {
    constexpr double visible = 3.0;
    return contrast(wanted, palette.color(QPalette::Window)) >= visible ? wanted : otherwise;
}

}  // namespace

int spacing() {
    return std::max(4, QFontMetrics{bodyFont()}.height() / 2);
}

int targetHeight() {
    return std::max(24, QFontMetrics{bodyFont()}.height() * 13 / 8);
}

int navigationHeight() {
    return std::max(44, QFontMetrics{bodyFont()}.height() * 3);
}

QRectF sliderGroove(const QRectF& slider, int handle) {
    const double thickness = handle / 4.0;
    return {slider.left() + handle / 2.0, slider.center().y() - thickness / 2, slider.width() - handle,
            thickness};
}

QFont bodyFont() {
    return QApplication::font();
}

QFont titleFont() {
    return scaled(1.25, QFont::DemiBold);
}

QFont labelFont() {
    return scaled(1.0, QFont::DemiBold);
}

QFont calloutFont() {
    return scaled(0.92, QFont::DemiBold);
}

int comfortableLineWidth() {
    return bodyCharacters(80);
}

int widestWordWidth() {
    return bodyCharacters(22);
}

int narrowestLineWidth() {
    return bodyCharacters(52);
}

double contrast(const QColor& one, const QColor& other) {
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QColor legible(const QColor& faint, const QColor& full, const QColor& ground) {
    constexpr double readable = 4.5;
    constexpr int parts = 16;
    QColor mixed = faint;
    for (int part = 1; contrast(mixed, ground) < readable && part <= parts; ++part) {
        const auto mix = [part](int from, int to) { return from + (to - from) * part / parts; };
        mixed = QColor{mix(faint.red(), full.red()), mix(faint.green(), full.green()),
                       mix(faint.blue(), full.blue())};
    }
    return mixed;
}

QColor accentColor() {
    return toQColor(colors::blue);
}

QColor paler(const QColor& color) {
    constexpr int part = 55;
    const auto mix = [](int from) { return from + (255 - from) * part / 100; };
    return {mix(color.red()), mix(color.green()), mix(color.blue())};
}

void drawTick(QPainter& painter, const QRectF& square) {
    const double side = square.width();
    painter.setPen(QPen{Qt::white, side / 8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin});
    painter.setBrush(Qt::NoBrush);
    const QPointF middle = square.center();
    const std::array corners{middle + QPointF{-0.22, 0.0} * side, middle + QPointF{-0.05, 0.19} * side,
                             middle + QPointF{0.25, -0.18} * side};
    painter.drawPolyline(corners.data(), static_cast<int>(corners.size()));
}

QColor focusColor(const QPalette& palette) {
    return firstVisible(palette, QColor{0, 96, 214}, QColor{120, 180, 255});
}

QColor outlineColor(const QPalette& palette) {
    return firstVisible(palette, QColor{125, 125, 125}, QColor{160, 160, 160});
}

}  // namespace velmorindal::look
