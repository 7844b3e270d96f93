#pragma once

#include <QColor>
#include <QString>
#include <string_view>

#include "Color.h"

namespace velmorindal {

/// Texts are UTF-8 everywhere except in the toolkit.
inline QString toQString(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

inline QColor toQColor(const Color& color) {
    return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                            static_cast<float>(color.blue));
}

}  // namespace velmorindal
