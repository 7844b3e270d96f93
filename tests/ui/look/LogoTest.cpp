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

TEST(Logo, ARedCircleSurroundsIt) {
    LogoWidget logo;
    logo.resize(logo.sizeHint());
    const QImage picture = logo.grab().toImage();

    int redPixels = 0;
    for (int x = 0; x < picture.width() / 4; ++x) {
        const QColor pixel = picture.pixelColor(x, picture.height() / 2);
        redPixels += pixel.red() > 180 && pixel.green() < 60 ? 1 : 0;
    }
    EXPECT_NEAR(redPixels, 4, 1);
    EXPECT_EQ(picture.pixelColor(0, 0), logo.palette().color(QPalette::Window));
}

}  // namespace
}  // namespace velmorindal
