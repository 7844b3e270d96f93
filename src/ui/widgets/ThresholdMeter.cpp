#include "ui/widgets/ThresholdMeter.h"

#include <QStyle>
#include <cmath>

#include "ui/widgets/Look.h"
#include "ui/widgets/ProgressBarWidget.h"
#include "ui/widgets/StepSlider.h"
#include "ui/widgets/ToQt.h"

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
      bar_{new ProgressBarWidget{toQString(barName), this}} {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(slider_, &StepSlider::valueChanged, this,
            [this](int position) { view_.moveSlider(threshold_, position); });
}

void ThresholdMeter::refresh(const ProgressBar& reading) {
    slider_->setValue(view_.position(threshold_));
    bar_->setBar(reading);
}

QSize ThresholdMeter::sizeHint() const {
    return {look::narrowestLineWidth() / 2, wholeHeight()};
}

QSize ThresholdMeter::minimumSizeHint() const {
    return {slider_->minimumSizeHint().width() * 2, wholeHeight()};
}

int ThresholdMeter::wholeHeight() const {
    return slider_->sizeHint().height() + gap + bar_->sizeHint().height();
}

void ThresholdMeter::resizeEvent(QResizeEvent* /*event*/) {
    const int handle = handleWidth(slider_);
    const int sliderHeight = slider_->sizeHint().height();
    const double track = width() - handle;
    // The bar begins at 0, the slider where its range does.
    const int first =
        static_cast<int>(std::lround(track * threshold_.range.minimum / threshold_.range.maximum));
    slider_->setGeometry(first, 0, width() - first, sliderHeight);
    bar_->setGeometry(handle / 2, sliderHeight + gap, width() - handle, bar_->sizeHint().height());
}

}  // namespace velmorindal
