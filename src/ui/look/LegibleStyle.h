#pragma once

#include <QProxyStyle>

class QPushButton;
class QStyleOptionSlider;

namespace velmorindal {

/// The desktop's style, but for the marks that many styles draw too faintly or too small: radio buttons,
/// check boxes, sliders and the frames of buttons stand out from the page at 3 : 1 in every palette and grow
/// with the font, the text of what cannot be chosen just now can still be read, and the mark of the focus is
/// left to the FocusRing. What is pressed is high enough to be hit, and a button always underlines its access
/// key.
class LegibleStyle final : public QProxyStyle {
    Q_OBJECT

  public:
    /// `button` leads from page to page, and is higher than what is pressed within a page.
    static void markAsLeading(QPushButton& button);

    using QProxyStyle::polish;
    void polish(QPalette& palette) override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override;

  private:
    void drawSlider(const QStyleOptionSlider& slider, QPainter& painter, const QWidget* widget) const;
};

}  // namespace velmorindal
