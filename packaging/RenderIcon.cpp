// Draws an SVG picture as a square PNG, for the icon sizes of desktops.
//
// Usage: velmorindal-render-icon PICTURE.svg SIZE ICON.png

#include <unistd.h>

#include <QImage>
#include <QPainter>
#include <QString>
#include <QSvgRenderer>
#include <cstdlib>

#include "Print.h"

int main(int argumentCount, char** arguments) {
    if (argumentCount != 4) {
        velmorindal::writeLine(STDERR_FILENO, "usage: velmorindal-render-icon PICTURE.svg SIZE ICON.png");
        return EXIT_FAILURE;
    }
    QSvgRenderer picture{QString::fromLocal8Bit(arguments[1])};
    const int size = QString::fromLocal8Bit(arguments[2]).toInt();
    if (!picture.isValid() || size <= 0) {
        velmorindal::writeLine(STDERR_FILENO, "velmorindal-render-icon: no picture, or no size");
        return EXIT_FAILURE;
    }
    QImage icon{size, size, QImage::Format_ARGB32_Premultiplied};
    icon.fill(Qt::transparent);
    QPainter painter{&icon};
    picture.render(&painter);
    painter.end();
    return icon.save(QString::fromLocal8Bit(arguments[3])) ? EXIT_SUCCESS : EXIT_FAILURE;
}
