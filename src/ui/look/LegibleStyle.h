#pragma once

#include <QProxyStyle>

class QPushButton;
class QStyleOptionSlider;

namespace velmorindal {

/// The desktop's style, except for marks that many styles draw too faintly or too small. Radio buttons, check
/// boxes, sliders and the frames of buttons have a contrast of 3 : 1 with the page in every palette and grow
/// with the font. The text of disabled controls can be read. The focus is marked by the FocusRing only.
/// Controls are high enough to click, and a button always underlines its access key.
class LegibleStyle final : public QProxyStyle {
    Q_OBJECT

  public:
    /// Marks `button` as one that leads from page to page: it is higher than controls within a page.
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
