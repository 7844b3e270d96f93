#include "FocusRing.h"

#include <QApplication>
#include <QCheckBox>
#include <QCommonStyle>
#include <QLabel>
#include <QPainter>
#include <QRadioButton>
#include <algorithm>

#include "Look.h"

namespace velmorindal {

namespace {

/// The style of a focus frame. In older versions of the toolkit the style of the application cannot find out
/// which control the frame surrounds.
class RingStyle final : public QCommonStyle {
  public:
    explicit RingStyle(FocusRing* ring) : ring_{ring} { setParent(ring); }

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        if (metric == PM_FocusFrameHMargin || metric == PM_FocusFrameVMargin) {
            // The ring stays inside most controls, since the control's row would clip it outside. A text
            // fills its label, and the mark of a choice stands at its edge; there is room around them.
            const bool aroundText = qobject_cast<const QLabel*>(ring_->widget()) != nullptr;
            const bool besideMark = metric == PM_FocusFrameHMargin &&
                                    (qobject_cast<const QRadioButton*>(ring_->widget()) != nullptr ||
                                     qobject_cast<const QCheckBox*>(ring_->widget()) != nullptr);
            return aroundText || besideMark ? std::max(4, look::spacing() / 2) : 0;
        }
        return QCommonStyle::pixelMetric(metric, option, widget);
    }

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override {
        switch (hint) {
            case SH_FocusFrame_AboveWidget:
                // Below its control, the ring would be hidden by a control that paints its whole background.
                return 1;
            case SH_FocusFrame_Mask:
                // The toolkit's mask cuts off what lies over the control.
                return 0;
            default:
                return QCommonStyle::styleHint(hint, option, widget, data);
        }
    }

  private:
    const FocusRing* const ring_;
};

}  // namespace

FocusRing::FocusRing(QWidget* window) : QFocusFrame{window}, window_{window} {
    setStyle(new RingStyle{this});
    // A window that opens without the focus would show its ring with its other children.
    hide();
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget* /*before*/, QWidget* focused) { follow(focused); });
}

void FocusRing::follow(QWidget* focused) {
    // A pop-up list is a separate window and marks its current entry. The toolkit draws no frame around a
    // whole window.
    const bool mine = focused != nullptr && focused->window() == window_;
    setWidget(mine ? focused : nullptr);
}

void FocusRing::paintEvent(QPaintEvent* /*event*/) {
    constexpr double width = 2.0;
    constexpr double inset = width / 2;
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen{look::focusColor(palette()), width});
    painter.drawRoundedRect(QRectF{rect()}.adjusted(inset, inset, -inset, -inset), 4.0, 4.0);
}

}  // namespace velmorindal
