#include <gtest/gtest.h>

#include <QApplication>
#include <QIcon>
#include <QImage>

#include "ui/widgets/LogoWidget.h"

namespace velmorindal {
namespace {

TEST(Logo, ItIsPaintedFromTheVectorsAtEverySize) {
    const QIcon icon{QStringLiteral(":/velmorindal/Logo.svg")};

    for (const int side : {16, 256}) {
        const QImage picture = icon.pixmap(side, side).toImage();
        ASSERT_EQ(picture.width(), side);
        EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 0);
        EXPECT_EQ(picture.pixelColor(side / 2, side / 12).alpha(), 255);
    }
}

TEST(Logo, ItIsTheIconOfTheApplication) {
    EXPECT_FALSE(QApplication::windowIcon().isNull());
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
