#pragma once

#include <QWidget>

#include "ui/views/CalibrationPanelView.h"

namespace velmorindal {

class ProgressBarWidget;
class StepSlider;

/// A threshold's slider with the bar of live readings under it, on one scale: the handle stands straight
/// above the point that the fill reaches when a reading equals the threshold.
class ThresholdMeter final : public QWidget {
    Q_OBJECT

  public:
    /// `view` must outlive the meter.
    ThresholdMeter(CalibrationPanelView& view, const CalibrationPanelView::Slider& threshold,
                   std::string_view barName);

    void refresh(const ProgressBar& reading);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    int wholeHeight() const;

    CalibrationPanelView& view_;
    const CalibrationPanelView::Slider& threshold_;
    StepSlider* slider_;
    ProgressBarWidget* bar_;
};

}  // namespace velmorindal
