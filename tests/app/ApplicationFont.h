#pragma once

#include <QApplication>
#include <QFont>

namespace velmorindal {

/// Changes the size of the application's font; the font before comes back when this goes out of scope.
class ApplicationFont {
  public:
    ApplicationFont() = default;
    ApplicationFont(const ApplicationFont&) = delete;
    ApplicationFont& operator=(const ApplicationFont&) = delete;
    ~ApplicationFont() { QApplication::setFont(before_); }

    void setPointSize(double points) const {
        QFont font = before_;
        font.setPointSizeF(points);
        QApplication::setFont(font);
    }

    void setPixelSize(int pixels) const {
        QFont font = before_;
        font.setPixelSize(pixels);
        QApplication::setFont(font);
    }

    void scale(double factor) const { setPointSize(before_.pointSizeF() * factor); }

  private:
    const QFont before_ = QApplication::font();
};

}  // namespace velmorindal
