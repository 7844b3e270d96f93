#include "LogoPicture.h"

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

namespace velmorindal {
namespace {

class LogoIconEngine final : public QIconEngine {
  public:
    void paint(QPainter* painter, const QRect& where, QIcon::Mode /*mode*/, QIcon::State /*state*/) override {
        paintLogoPicture(*painter, where);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap picture{size};
        picture.fill(Qt::transparent);
        QPainter painter{&picture};
        paint(&painter, {QPoint{0, 0}, size}, mode, state);
        return picture;
    }
    QIconEngine* clone() const override { return new LogoIconEngine; }
};

}  // namespace

void paintLogoPicture(QPainter& painter, const QRectF& where) {
    static QSvgRenderer renderer{QStringLiteral(":/velmorindal/Logo.svg")};
    renderer.render(&painter, where);
}

QIcon logoIcon() {
    return QIcon{new LogoIconEngine};
}

}  // namespace velmorindal
