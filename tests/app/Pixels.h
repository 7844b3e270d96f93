#pragma once

#include <QColor>
#include <QImage>

namespace velmorindal {

/// Whether `wanted` holds for the colour of any pixel.
template <typename Wanted>
bool hasPixel(const QImage& picture, Wanted wanted) {
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (wanted(picture.pixelColor(x, y))) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace velmorindal
