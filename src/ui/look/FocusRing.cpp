#include "FocusRing.h"

#include <QApplication>
#include <QCommonStyle>
#include <QLabel>
#include <QPainter>
#include <algorithm>

#include "Look.h"

namespace velmorindal {

namespace {

/// What a focus frame asks of its style. The older versions of the toolkit do not say around what it is, so
/// the style of the application could not tell.
class RingStyle final : public QCommonStyle {
  public:
    explicit RingStyle(FocusRing* ring) : ring_{ring} { setParent(ring); }

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        if (metric == PM_FocusFrameHMargin || metric == PM_FocusFrameVMargin) {
            // It stays within its control: beyond it, the control's row would cut it off. A text fills its
            // label to the edge, and has room around it.
            const bool aroundText = qobject_cast<const QLabel*>(ring_->widget()) != nullptr;
            return aroundText ? std::max(4, look::spacing() / 2) : 0;
        }
        return QCommonStyle::pixelMetric(metric, option, widget);
    }

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override {
        // Below its control, the ring would be hidden by any that paints its whole ground.
        return hint == SH_FocusFrame_AboveWidget ? 1 : QCommonStyle::styleHint(hint, option, widget, data);
    }

  private:
    const FocusRing* const ring_;
};

}  // namespace

FocusRing::FocusRing(QWidget* window) : QFocusFrame{window}, window_{window} {
    setStyle(new RingStyle{this});
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget* /*before*/, QWidget* focused) { follow(focused); });
}

void FocusRing::follow(QWidget* focused) {
    // A pop-up list has its own window and shows its current entry itself. The toolkit draws no frame around
    // a whole window.
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
