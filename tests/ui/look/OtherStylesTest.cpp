#include <gmock/gmock.h>

#include <QCheckBox>
#include <QPainter>
#include <QProxyStyle>
#include <QPushButton>
#include <QRadioButton>
#include <QStyleOptionButton>

#include "Contrast.h"
#include "LegibleStyle.h"
#include "Pixels.h"
#include "WindowTest.h"

namespace velmorindal {
namespace {

/// Draws buttons by itself, as the styles of some desktops do, and takes every mark for a small one.
class DesktopStyle final : public QProxyStyle {
  public:
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
        if (element == CE_PushButtonBevel) {
            painter->fillRect(option->rect, option->palette.color(QPalette::Button));
        } else if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
                   button != nullptr && element == CE_PushButtonLabel) {
            proxy()->drawItemText(painter, button->rect, Qt::AlignCenter, button->palette, true, button->text,
                                  QPalette::ButtonText);
        } else {
            QProxyStyle::drawControl(element, option, painter, widget);
        }
    }

    void drawItemText(QPainter* painter, const QRect& rect, int flags, const QPalette& palette, bool enabled,
                      const QString& text, QPalette::ColorRole role) const override {
        const int unmarked = (flags & ~int{Qt::TextShowMnemonic}) | int{Qt::TextHideMnemonic};
        QProxyStyle::drawItemText(painter, rect, unmarked, palette, enabled, text, role);
    }

    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override {
        constexpr int mark = 4;
        return type == CT_RadioButton || type == CT_CheckBox
                   ? contents + QSize{mark, 0}
                   : QProxyStyle::sizeFromContents(type, option, contents, widget);
    }
};

class OtherStylesTest : public testing::Test {
  protected:
    OtherStylesTest() { style_.setBaseStyle(new DesktopStyle); }

    /// As it is painted on a page of that style.
    QImage picture(QWidget& control) const {
        control.setStyle(const_cast<LegibleStyle*>(&style_));
        control.resize(control.sizeHint());
        return control.grab().toImage();
    }

    const LegibleStyle& style() const { return style_; }

  private:
    LegibleStyle style_;
};

TEST_F(OtherStylesTest, AButtonHasAFrameThatCanBeSeen) {
    QPushButton button;
    const QColor ground = button.palette().color(QPalette::Window);

    EXPECT_GE(strongestContrast(picture(button), ground), markContrast);
    button.setFlat(true);
    EXPECT_LT(strongestContrast(picture(button), ground), markContrast);
}

TEST_F(OtherStylesTest, AButtonUnderlinesTheLetterOfItsShortcut) {
    QPushButton button{QStringLiteral("Next")};
    const QImage without = picture(button);
    button.setShortcut(Qt::ALT | Qt::Key_N);
    const QImage with = picture(button);

    int rows = 0;
    for (int y = 0; y < with.height(); ++y) {
        const QRect row{0, y, with.width(), 1};
        rows += with.copy(row) == without.copy(row) ? 0 : 1;
    }

    EXPECT_EQ(with.size(), without.size());
    EXPECT_THAT(rows, testing::AllOf(testing::Ge(1), testing::Le(2))) << "the line below the letter";
}

TEST_F(OtherStylesTest, ATextThatMarksItsLetterItselfIsNotMarkedTwice) {
    QPushButton open{QStringLiteral("Open")};
    open.setShortcut(Qt::ALT | Qt::Key_O);
    QPushButton marked{QStringLiteral("&Open")};

    EXPECT_EQ(picture(marked), picture(open));
}

TEST_F(OtherStylesTest, ADisabledTextHasNoShadow) {
    QPushButton button{QStringLiteral("Next")};
    QPalette palette = button.palette();
    palette.setColor(QPalette::Light, Qt::red);
    button.setPalette(palette);
    button.setEnabled(false);

    EXPECT_FALSE(
        hasPixel(picture(button), [](const QColor& color) { return color.red() > 2 * color.green(); }));
}

TEST_F(OtherStylesTest, AButtonKeepsItsIcon) {
    QPixmap red{16, 16};
    red.fill(Qt::red);
    QPushButton button{QIcon{red}, QStringLiteral("Open")};
    LegibleStyle plain;
    button.setStyle(&plain);
    button.resize(button.sizeHint());

    EXPECT_TRUE(hasPixel(button.grab().toImage(), [](const QColor& color) { return color == Qt::red; }));
}

TEST_F(OtherStylesTest, ATextBesideALargeMarkIsWhole) {
    const auto isWhole = [this](QAbstractButton& button, QStyle::SubElement text) {
        picture(button);
        QStyleOptionButton option;
        option.initFrom(&button);
        return style().subElementRect(text, &option, &button).width() >=
               button.fontMetrics().horizontalAdvance(button.text());
    };
    QRadioButton radio{QStringLiteral("Long/Short Mode")};
    EXPECT_TRUE(isWhole(radio, QStyle::SE_RadioButtonContents));
    QCheckBox box{QStringLiteral("Enable short output")};
    EXPECT_TRUE(isWhole(box, QStyle::SE_CheckBoxContents));
}

}  // namespace
}  // namespace velmorindal
