#include <gtest/gtest.h>

#include <QApplication>
#include <QIcon>
#include <QImage>

#include "LogoWidget.h"

namespace velmorindal {
namespace {

TEST(Logo, TheIconOfTheApplicationIsPaintedFromTheVectorsAtEverySize) {
    const QIcon icon = QApplication::windowIcon();

    for (const int side : {16, 256}) {
        const QImage picture = icon.pixmap(side, side).toImage();
        ASSERT_EQ(picture.width(), side);
        EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 0);
        EXPECT_EQ(picture.pixelColor(side - 1, side - 1).alpha(), 0);
        EXPECT_EQ(picture.pixelColor(side / 2, side / 12).alpha(), 255);
    }
}

TEST(Logo, IsPaintedInsideItsCircle) {
    LogoWidget logo;
    logo.resize(logo.sizeHint());
    const QImage picture = logo.grab().toImage();

    const QColor page = logo.palette().color(QPalette::Window);
    int painted = 0;
    for (int x = picture.width() / 4; x < picture.width() * 3 / 4; ++x) {
        painted += picture.pixelColor(x, picture.height() / 2) != page ? 1 : 0;
    }
    EXPECT_GT(painted, picture.width() / 4);
}

TEST(Logo, AFaintWhiteShadowFadesAwayAroundItsCircle) {
    LogoWidget logo;
    QPalette black = logo.palette();
    black.setColor(QPalette::Window, Qt::black);
    logo.setPalette(black);
    logo.resize(logo.sizeHint());
    const QImage picture = logo.grab().toImage();

    const int middle = picture.height() / 2;
    int ring = 0;
    while (picture.pixelColor(ring, middle).red() < 180 || picture.pixelColor(ring, middle).green() > 60) {
        ++ring;
    }
    const QColor beside = picture.pixelColor(ring - 2, middle);
    // White over a third of black.
    EXPECT_EQ(beside.red(), beside.green());
    EXPECT_EQ(beside.red(), beside.blue());
    EXPECT_GT(beside.red(), 30);
    EXPECT_LT(beside.red(), 85);
    EXPECT_LT(picture.pixelColor(ring - 4, middle).red(), beside.red());
    EXPECT_EQ(picture.pixelColor(0, 0), QColor{Qt::black});
}

}  // namespace
}  // namespace velmorindal
