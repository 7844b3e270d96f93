#include "ThresholdMeter.h"

#include <QPainter>
#include <QStyle>
#include <cmath>

#include "Look.h"
#include "ProgressBarWidget.h"
#include "StepSlider.h"
#include "TextLabel.h"
#include "ToQt.h"

namespace velmorindal {

namespace {

constexpr int gap = 2;

int handleWidth(const QWidget* slider) {
    return slider->style()->pixelMetric(QStyle::PM_SliderLength, nullptr, slider);
}

}  // namespace

ThresholdMeter::ThresholdMeter(CalibrationPanelView& view, const CalibrationPanelView::Slider& threshold,
                               std::string_view barName)
    : view_{view},
      threshold_{threshold},
      slider_{new StepSlider{toQString(threshold.accessibleName), threshold.range, this}},
      number_{new TextLabel{TextRole::Plain, this}},
      bar_{new ProgressBarWidget{toQString(barName), this}} {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    // The scale starts at the left in every language, as bar and groove are drawn.
    setLayoutDirection(Qt::LeftToRight);
    slider_->setAccessibleDescription(toQString(threshold.spokenUnit));
    // The same width in every meter.
    number_->keepRoomFor(QStringLiteral("00.00 s"));
    connect(slider_, &StepSlider::valueChanged, this,
            [this](int position) { view_.moveSlider(threshold_, position); });
}

void ThresholdMeter::refresh(const ProgressBar& reading, double trace) {
    slider_->setValue(view_.position(threshold_));
    number_->showText(view_.thresholdText(threshold_));
    bar_->setBar(reading, trace);
}

QSize ThresholdMeter::sizeHint() const {
    return {look::narrowestLineWidth() / 2 + numberWidth(), wholeHeight()};
}

QSize ThresholdMeter::minimumSizeHint() const {
    return sizeHint();
}

int ThresholdMeter::wholeHeight() const {
    return slider_->sizeHint().height() + gap + bar_->sizeHint().height();
}

int ThresholdMeter::numberWidth() const {
    return look::spacing() + number_->sizeHint().width();
}

void ThresholdMeter::resizeEvent(QResizeEvent* /*event*/) {
    arrange();
}

void ThresholdMeter::arrange() {
    const int handle = handleWidth(slider_);
    const int sliderHeight = slider_->sizeHint().height();
    const int end = width() - numberWidth();
    const double track = end - handle;
    // The bar begins at 0, the slider at the start of its range.
    const int first =
        static_cast<int>(std::lround(track * threshold_.range.minimum / threshold_.range.maximum));
    slider_->setGeometry(first, 0, end - first, sliderHeight);
    number_->setGeometry(end + look::spacing(), 0, numberWidth() - look::spacing(), sliderHeight);
    bar_->setGeometry(handle / 2, sliderHeight + gap, end - handle, bar_->sizeHint().height());
}

void ThresholdMeter::paintEvent(QPaintEvent* /*event*/) {
    // Draws the groove from 0 to the slider's smallest value.
    const int handle = handleWidth(slider_);
    const QRectF groove = look::sliderGroove(slider_->geometry(), handle);
    const QRectF before{handle / 2.0, groove.top(), groove.left() + groove.height() - handle / 2.0,
                        groove.height()};
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(look::accentColor());
    painter.drawRoundedRect(before, groove.height() / 2, groove.height() / 2);
}

}  // namespace velmorindal
