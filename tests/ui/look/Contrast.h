#pragma once

#include <QColor>
#include <QImage>
#include <QPalette>
#include <algorithm>

#include "Look.h"

namespace velmorindal {

inline constexpr double textContrast = 4.5;
inline constexpr double markContrast = 3.0;

inline QPalette darkPalette() {
    QPalette palette{QColor{49, 54, 59}, QColor{35, 38, 41}};
    palette.setColor(QPalette::Base, QColor{27, 30, 32});
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, QColor{239, 240, 241});
        palette.setColor(QPalette::Disabled, role, QColor{154, 158, 166});
    }
    return palette;
}

/// The contrast between the ground of a picture and what stands out from it most.
inline double strongestContrast(const QImage& picture, const QColor& ground) {
    double strongest = 1.0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            strongest = std::max(strongest, look::contrast(picture.pixelColor(x, y), ground));
        }
    }
    return strongest;
}

}  // namespace velmorindal
